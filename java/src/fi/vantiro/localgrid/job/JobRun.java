package fi.vantiro.localgrid.job;

import fi.vantiro.localgrid.base.GridException;
import fi.vantiro.localgrid.base.Log;
import fi.vantiro.localgrid.base.Status;
import fi.vantiro.localgrid.files.Outputs;
import fi.vantiro.localgrid.process.JobFile;
import fi.vantiro.localgrid.process.JobOutcome;
import fi.vantiro.localgrid.process.Keeper;
import fi.vantiro.localgrid.process.LineFollower;
import fi.vantiro.localgrid.project.Project;
import java.io.IOException;
import java.nio.ByteBuffer;
import java.nio.channels.FileChannel;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.nio.file.LinkOption;
import java.nio.file.Path;
import java.util.Map;
import java.util.logging.Logger;

/**
 * Takes one job from its inputs to its results. It needs a thread twice, to hand the job to the
 * keeper and to collect what it left, and none while the job runs.
 */
public final class JobRun implements Runnable, Keeper.Client {
    private static final Logger LOG = Logger.getLogger(Log.NAME);
    private static final int TAIL = 1000;
    private static final int NOT_EXECUTABLE = 126;
    private static final int NOT_FOUND = 127;

    private final Project project;
    private final Job job;
    private JobHooks hooks;
    private WorkDirectory directory;
    private LineFollower follower;
    private volatile JobOutcome outcome;
    /** Whether nothing of what the job wrote is in its directory alone. */
    private boolean isCollected;

    private Keeper keeper;
    private int id;
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
        if (hooks.outputs().isEmpty()) {
            directory.inputsPlaced();
        }
        project.writeJobFile(file(), directory.root(), environment, job.command);
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
        keeper = project.keeper();
        id = keeper.run(file().path(), this);
    }

    /** Has the job ended, or keeps it from being started. */
    public synchronized void stop() {
        stopped = true;
        if (keeper != null) {
            keeper.stop(id);
        }
    }

    /** Hands a line to the job's standard input. */
    public synchronized void send(String line) throws IOException {
        file().addInput(line);
        if (keeper != null) {
            keeper.input(id);
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
            failure = GridException.text(e) + "; what it wrote is in " + directory.root();
        }
        end(failure);
    }

    /** Keeps what the job left; the text of its failure, null when it succeeded. */
    private String results() throws GridException, IOException {
        if (follower != null) {
            project.followers().remove(follower);
            follower.finish();
        }
        Outputs outputs = hooks.outputs().isEmpty() ? directory.changedFiles()
                                                    : directory.listedFiles(hooks.outputs());
        String failure = failure(outputs);
        project.jobs().addCpuTime(outcome.cpuMillis);
        hooks.ended(project.results(), job.number, outputs, failure == null);
        isCollected = outputs.lost().isEmpty();
        if (!isCollected) {
            LOG.warning("job " + job.number + " of " + project + " left what cannot be kept ("
                    + outputs.lost() + "); see " + directory.root());
        }
        return failure == null ? missing(outputs) : failure;
    }

    private void end(String failure) {
        String text = failure;
        try {
            if (follower != null) {
                project.followers().remove(follower);
            }
            file().delete();
            boolean keeps = hooks.keepsWork(project.settings().keepWork);
            if (directory != null && !keeps && (outcome == null || isCollected)) {
                project.directory().deleteWork(job.number);
            }
        } catch (Throwable e) {
            text = failure == null ? GridException.text(e) : failure;
        }
        Keeper.holdIfProgramEnds();
        project.end(job, text);
        project.scheduler().release();
    }

    private String failure(Outputs outputs) throws IOException {
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
            default:
                return "it could not be run: " + outcome.why + launcherSays();
        }
    }

    private String meaning() {
        return outcome.status == NOT_FOUND         ? " (command not found)"
                : outcome.status == NOT_EXECUTABLE ? " (not executable)"
                                                   : "";
    }

    private String missing(Outputs outputs) throws IOException {
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
        if (!Files.isRegularFile(path, LinkOption.NOFOLLOW_LINKS)) {
            return "";
        }
        try (FileChannel channel = Outputs.open(path)) {
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
