package fi.vantiro.localgrid.job;

import fi.vantiro.localgrid.base.GridException;
import fi.vantiro.localgrid.base.Status;
import fi.vantiro.localgrid.files.Trees;
import fi.vantiro.localgrid.process.JobFile;
import fi.vantiro.localgrid.process.JobOutcome;
import fi.vantiro.localgrid.process.JobRequest;
import fi.vantiro.localgrid.process.Keeper;
import fi.vantiro.localgrid.process.Keepers;
import fi.vantiro.localgrid.process.LineFollower;
import fi.vantiro.localgrid.project.Project;
import java.io.IOException;
import java.nio.ByteBuffer;
import java.nio.channels.FileChannel;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.Collection;
import java.util.Map;

/**
 * Takes one job from its inputs to its results. It needs a thread twice, to hand the job to the
 * keeper and to collect what it left, and none while the job runs.
 */
public final class JobRun implements Runnable, Keeper.Client {
    private static final int TAIL = 1000;
    private static final int NOT_EXECUTABLE = 126;
    private static final int NOT_FOUND = 127;

    private final Project project;
    private final Job job;
    private JobHooks hooks;
    private WorkDirectory directory;
    private LineFollower follower;
    private volatile JobOutcome outcome;

    private JobRequest request;
    private Keeper keeper;
    private long id;
    private boolean stopped;

    public JobRun(Project project, Job job) {
        this.project = project;
        this.job = job;
    }

    Project project() {
        return project;
    }

    private JobFile file() {
        return project.directory().job(job.number);
    }

    @Override
    public void run() {
        if (outcome != null) {
            collect();
        } else if (project.jobs().begin(job, this)) {
            handOver();
        } else {
            project.scheduler().release();
        }
    }

    private void handOver() {
        hooks = project.hooks();
        String failure;
        try {
            prepare();
            start();
            return;
        } catch (Throwable e) {
            // Whatever it was, the job has to end.
            failure = GridException.text(e);
        }
        end(failure);
    }

    private void prepare() throws GridException, IOException {
        directory = WorkDirectory.create(project.directory().work(job.number));
        Map<String, String> environment = project.environment(job);
        project.bundles().place(directory.root());
        hooks.prepare(job.number, directory.root(), environment);
        directory.inputsPlaced();
        request = project.request(file(), directory.root(), environment, job.command);
        if (hooks.lines(job.number) != null) {
            follower =
                    new LineFollower(directory.file(WorkDirectory.STDOUT), hooks.lines(job.number));
            project.followers().add(follower);
        }
    }

    private synchronized void start() throws GridException, IOException {
        if (stopped) {
            throw new GridException(Status.STOPPED, "stopped before it was started");
        }
        Keeper own = project.keeper().get();
        id = own.run(request, this);
        keeper = own;
        request = null;
        job.input().forEach(line -> keeper.input(id, line));
    }

    /** Has the job ended, or keeps it from being started. */
    public synchronized void stop() {
        stopped = true;
        if (keeper != null) {
            keeper.stop(id);
        }
    }

    /** Hands a line to the job's standard input. */
    public synchronized void send(String line) {
        if (keeper == null) {
            job.addInput(line);
        } else {
            keeper.input(id, line);
        }
    }

    @Override
    public void started() {
        project.jobs().started(job);
    }

    @Override
    public void ended(JobOutcome how) {
        outcome = how;
        project.scheduler().resume(this);
    }

    private void collect() {
        String failure;
        try {
            failure = results();
        } catch (Throwable e) {
            failure = GridException.text(e);
        }
        end(failure);
    }

    /** Keeps what the job left; the text of its failure, null when it succeeded. */
    private String results() throws GridException, IOException {
        if (follower != null) {
            project.followers().remove(follower);
            follower.finish();
        }
        Collection<String> outputs = hooks.outputs().isEmpty()
                ? directory.changedFiles()
                : directory.listedFiles(hooks.outputs());
        String failure = failure(outputs);
        project.jobs().addCpuTime(outcome.cpuMillis);
        hooks.ended(project.results(), job.number, directory.root(), outputs, failure == null);
        return failure;
    }

    private void end(String failure) {
        String text = failure;
        try {
            if (follower != null) {
                project.followers().remove(follower);
            }
            if (!project.settings().jobLauncher.isEmpty()) {
                file().delete();
            }
            if (directory != null && !hooks.keepsWork(project.settings().keepWork)) {
                Trees.delete(directory.root());
            }
        } catch (Throwable e) {
            text = failure == null ? GridException.text(e) : failure;
        }
        Keepers.holdIfProgramEnds();
        project.end(job, text);
        project.scheduler().release();
    }

    private String failure(Collection<String> outputs) throws IOException {
        switch (outcome.ending) {
            case EXITED:
                return outcome.status == 0 ? missing(outputs)
                                           : "exit status " + outcome.status + meaning() + errors();
            case TIMEOUT:
                return "timed out after " + project.settings().jobTimeout + " s" + errors();
            case STOPPED:
                return "it was ended from outside" + launcherSays();
            case LOST:
                return "the launcher ended with status " + outcome.status + " before the job did"
                        + launcherSays();
            case UNKEPT:
                return outcome.why + launcherSays();
            default:
                return "it could not be run: " + outcome.why + launcherSays();
        }
    }

    private String meaning() {
        return outcome.status == NOT_FOUND         ? " (command not found)"
                : outcome.status == NOT_EXECUTABLE ? " (not executable)"
                                                   : "";
    }

    private String missing(Collection<String> outputs) throws IOException {
        for (String name : hooks.outputs()) {
            if (!WorkDirectory.isPattern(name) && !outputs.contains(name)) {
                return "it did not write its output file " + name + errors();
            }
        }
        return null;
    }

    private String errors() throws IOException {
        return tail("", directory.file(WorkDirectory.STDERR));
    }

    private String launcherSays() throws IOException {
        return tail("\nthe launcher said:", file().launcherLog());
    }

    /** The last lines of a file, behind a title. */
    private static String tail(String title, Path path) throws IOException {
        if (!Files.isRegularFile(path)) {
            return "";
        }
        try (FileChannel channel = FileChannel.open(path)) {
            ByteBuffer tail = ByteBuffer.allocate(TAIL);
            long start = Math.max(0, channel.size() - TAIL);
            channel.read(tail, start);
            String text = new String(tail.array(), 0, tail.position(), StandardCharsets.UTF_8);
            // The first line of a cut text is a piece of one.
            text = start > 0 ? text.substring(text.indexOf('\n') + 1) : text;
            return text.trim().isEmpty() ? "" : title + "\n" + text.trim();
        }
    }
}
