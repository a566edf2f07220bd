package fi.vantiro.localgrid;

import java.io.IOException;
import java.io.OutputStreamWriter;
import java.io.Writer;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.Arrays;
import java.util.List;
import java.util.Map;
import java.util.Set;
import java.util.concurrent.BlockingQueue;
import java.util.concurrent.ConcurrentHashMap;
import java.util.concurrent.TimeUnit;
import java.util.function.Consumer;
import java.util.regex.Matcher;
import java.util.regex.Pattern;

/**
 * The operating-system processes of one job: started, fed, listened to, timed and killed as one.
 */
final class JobProcess {
    /** Runs the command and leaves its processor time in the file that is the shell's own name. */
    private static final String TIMED = "\"$@\"; set -- $?; times >\"$0\"; exit $1";
    private static final Pattern TIME = Pattern.compile("(\\d+)m(\\d+)[.,](\\d{2,3})\\d*s");
    private static final String MARK = "VANTIRO_WORKDIR";
    private static final int POLL_MS = 20;
    private static final Set<JobProcess> RUNNING = ConcurrentHashMap.newKeySet();
    /** Set before the running jobs are killed, which makes room for waiting ones to start. */
    private static volatile boolean ending;

    static {
        Runtime.getRuntime().addShutdownHook(new Thread(JobProcess::killAll));
    }

    private final WorkDirectory directory;
    private final Path times;
    private final ProcessBuilder builder;
    private Process process;
    private boolean killed;
    private boolean timedOut;

    JobProcess(List<String> command, Map<String, String> environment, WorkDirectory directory,
            Path times) {
        this.directory = directory;
        this.times = times;
        List<String> timed =
                new ArrayList<>(Arrays.asList("/bin/sh", "-c", TIMED, times.toString()));
        timed.addAll(command);
        builder = new ProcessBuilder(timed);
        builder.directory(directory.root().toFile());
        builder.redirectOutput(directory.file(WorkDirectory.STDOUT).toFile());
        builder.redirectError(directory.file(WorkDirectory.STDERR).toFile());
        builder.environment().putAll(environment);
        builder.environment().put(MARK, directory.root().toString());
    }

    /**
     * Runs to the end and returns the exit status. Lines of the input queue go to standard input;
     * each line of standard output goes to the consumer, which may be null.
     */
    int run(BlockingQueue<String> input, Consumer<String> lines, int timeoutSeconds)
            throws GridException, IOException, InterruptedException {
        RUNNING.add(this);
        try {
            start();
            Thread feeder = GridThreads.start("vantiro-input", () -> feed(input));
            try {
                return lines == null ? await(timeoutSeconds, null)
                                     : awaitWithLines(timeoutSeconds, lines);
            } finally {
                killProcesses();
                feeder.interrupt();
            }
        } finally {
            RUNNING.remove(this);
        }
    }

    private synchronized void start() throws GridException, IOException {
        if (killed || ending) {
            throw new GridException(Status.STOPPED, "stopped before it was started");
        }
        process = ProcessStarts.start(builder);
    }

    private int awaitWithLines(int timeoutSeconds, Consumer<String> lines)
            throws IOException, InterruptedException {
        try (LineFollower follower =
                        new LineFollower(directory.file(WorkDirectory.STDOUT), lines)) {
            int status = await(timeoutSeconds, follower);
            follower.finish();
            return status;
        }
    }

    private int await(int timeoutSeconds, LineFollower follower)
            throws IOException, InterruptedException {
        long limit = TimeUnit.SECONDS.toNanos(timeoutSeconds);
        long started = System.nanoTime();
        while (!process.waitFor(POLL_MS, TimeUnit.MILLISECONDS)) {
            if (follower != null) {
                follower.poll();
            }
            if (limit > 0 && !timedOut && System.nanoTime() - started > limit) {
                timedOut = true;
                kill();
            }
        }
        return process.exitValue();
    }

    private void feed(BlockingQueue<String> input) {
        try (Writer writer =
                        new OutputStreamWriter(process.getOutputStream(), StandardCharsets.UTF_8)) {
            while (true) {
                writer.write(input.take() + "\n");
                writer.flush();
            }
        } catch (IOException | InterruptedException e) {
            // The job has ended, and with it the interest in its input.
            return;
        }
    }

    /** Kills every process of the job, and keeps it from being started if it was not. */
    void kill() throws IOException, InterruptedException {
        synchronized (this) {
            killed = true;
            if (process == null) {
                return;
            }
        }
        killProcesses();
        process.destroyForcibly();
    }

    /** Jobs do not outlive the Java virtual machine that looks after them. */
    private static void killAll() {
        ending = true;
        for (JobProcess job : RUNNING) {
            try {
                job.kill();
            } catch (IOException | InterruptedException e) {
                // There is nobody left to tell, and the other jobs are still to be killed.
                continue;
            }
        }
    }

    private void killProcesses() throws IOException, InterruptedException {
        MarkedProcesses.kill(MARK, directory.root().toString());
    }

    boolean timedOut() {
        return timedOut;
    }

    /** The processor time that the job used, in milliseconds; 0 when it was killed. */
    long cpuMillis() throws IOException {
        if (!Files.exists(times)) {
            return 0;
        }
        List<String> text = Files.readAllLines(times, StandardCharsets.US_ASCII);
        long total = 0;
        // The shell's own times are in the first line, those of its children in the second.
        Matcher matcher = TIME.matcher(text.size() < 2 ? "" : text.get(1));
        while (matcher.find()) {
            String fraction = (matcher.group(3) + "0").substring(0, 3);
            total += 60_000 * Long.parseLong(matcher.group(1))
                    + 1000 * Long.parseLong(matcher.group(2)) + Long.parseLong(fraction);
        }
        return total;
    }
}
