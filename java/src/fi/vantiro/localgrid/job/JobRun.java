package fi.vantiro.localgrid.job;

import fi.vantiro.localgrid.base.GridException;
import fi.vantiro.localgrid.base.GridThreads;
import fi.vantiro.localgrid.base.Log;
import fi.vantiro.localgrid.base.Status;
import fi.vantiro.localgrid.files.Outputs;
import fi.vantiro.localgrid.process.JobFile;
import fi.vantiro.localgrid.process.JobOutcome;
import fi.vantiro.localgrid.process.JobRequest;
import fi.vantiro.localgrid.process.Keeper;
import fi.vantiro.localgrid.process.Keepers;
import java.io.IOException;
import java.nio.ByteBuffer;
import java.nio.channels.FileChannel;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.nio.file.LinkOption;
import java.nio.file.Path;
import java.util.Collection;
import java.util.LinkedHashMap;
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

    private final int number;
    private final JobOwner owner;
    private final JobWork work;
    private final JobEngine engine;
    /** Here, since in a full heap it could not be made when it is needed. */
    private final Runnable telling = this::tell;
    private Job job;
    private WorkDirectory directory;
    private LineFollower follower;
    private volatile JobOutcome outcome;
    private String failure;
    /** Whether nothing of what the job wrote is in its directory alone. */
    private boolean isCollected;

    private JobRequest request;
    private Keeper keeper;
    private long id;
    private boolean stopped;

    JobRun(int number, JobOwner owner, JobEngine engine) {
        this.number = number;
        this.owner = owner;
        work = owner.work();
        this.engine = engine;
    }

    private JobFile file() {
        return work.file(number);
    }

    @Override
    public void run() {
        if (outcome != null) {
            collect();
            return;
        }
        job = owner.begin(number, this);
        if (job == null) {
            engine.giveBack();
        } else {
            handOver();
        }
    }

    private void handOver() {
        try {
            prepare();
            start();
            return;
        } catch (Throwable e) {
            // Whatever it was, the job has to end.
            failure = GridException.text(e);
        }
        end();
    }

    private void prepare() throws GridException, IOException {
        directory = WorkDirectory.create(work.directory(number));
        Map<String, String> environment = new LinkedHashMap<>();
        work.prepare(number, directory.root(), environment);
        if (work.outputs().isEmpty()) {
            directory.inputsPlaced();
        }
        request = engine.request(file(), directory.root(), environment, job.command);
        // They are there from the start: a file that was missed once may stay unseen on a network.
        for (String stream : new String[] {WorkDirectory.STDOUT, WorkDirectory.STDERR}) {
            Files.deleteIfExists(directory.file(stream));
            Files.createFile(directory.file(stream));
        }
        LineFeed lines = work.lines();
        if (lines != null) {
            follower = lines.follow(number, directory.file(WorkDirectory.STDOUT));
        }
    }

    private synchronized void start() throws GridException, IOException {
        if (stopped) {
            throw new GridException(Status.STOPPED, "stopped before it was started");
        }
        Keeper own = work.keeper();
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
        owner.started(job);
    }

    @Override
    public void ended(JobOutcome how) {
        outcome = how;
        engine.resume(this);
    }

    private void collect() {
        try {
            failure = results();
        } catch (Throwable e) {
            failure = GridException.text(e) + "; what it wrote is in " + directory.root();
        }
        end();
    }

    /** Keeps what the job left; the text of its failure, null when it succeeded. */
    private String results() throws GridException, IOException {
        boolean keepsLines =
                follower != null && follower.isAt(directory.file(WorkDirectory.STDOUT));
        Collection<String> patterns = work.outputs();
        Outputs outputs =
                patterns.isEmpty() ? directory.changedFiles() : directory.listedFiles(patterns);
        String reason = reason(outputs);
        Path kept = work.collect(number, outputs, reason == null);
        if (follower != null) {
            follower.end(keepsLines && kept != null ? kept.resolve(WorkDirectory.STDOUT) : null);
        }
        isCollected = outputs.lost().isEmpty();
        if (!isCollected) {
            LOG.warning("job " + number + " of " + owner + " left what cannot be kept ("
                    + outputs.lost() + "); see " + directory.root());
        }
        return reason == null ? missing(outputs) : reason;
    }

    private void end() {
        try {
            if (follower != null) {
                follower.end(null);
            }
            if (engine.hasLauncher()) {
                file().delete();
            }
            if (directory != null && !work.keepsWork() && (outcome == null || isCollected)) {
                work.deleteDirectory(number);
            }
        } catch (Throwable e) {
            failure = failure == null ? GridException.text(e) : failure;
        }
        Keepers.holdIfProgramEnds();
        GridThreads.untilMemory(telling);
        engine.giveBack();
    }

    private void tell() {
        owner.ended(job, outcome, failure);
    }

    private String reason(Outputs outputs) throws IOException {
        switch (outcome.ending) {
            case EXITED:
                return outcome.status == 0 ? missing(outputs)
                                           : "exit status " + outcome.status + meaning() + errors();
            case TIMEOUT:
                return "timed out after " + engine.settings().jobTimeout + " s" + errors();
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

    private String missing(Outputs outputs) throws IOException {
        for (String name : work.outputs()) {
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
