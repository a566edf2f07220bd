package fi.vantiro.localgrid.process;

import fi.vantiro.localgrid.base.GridException;
import fi.vantiro.localgrid.base.GridThreads;
import fi.vantiro.localgrid.base.Log;
import fi.vantiro.localgrid.base.Status;
import java.io.IOException;
import java.io.OutputStream;
import java.nio.file.Path;
import java.security.SecureRandom;
import java.util.Map;
import java.util.concurrent.ConcurrentHashMap;
import java.util.concurrent.CountDownLatch;
import java.util.concurrent.TimeUnit;
import java.util.concurrent.locks.ReentrantLock;
import java.util.function.BiFunction;
import java.util.logging.Logger;

/**
 * The native process that starts this program's jobs, looks after all that they start, and ends it
 * when it is told to, when a job ends, and when the program is gone.
 */
public final class Keeper {
    private static final Logger LOG = Logger.getLogger(Log.NAME);
    private static final int START_SECONDS = 30;
    private static final int WAKE_SECONDS = 1;
    private static final int MOST_WARNINGS = 10;
    /** So that whoever writes into the pipe cannot answer for a job. */
    private static final SecureRandom NUMBERS = new SecureRandom();
    /** Here, since in a full heap its class could not be loaded when it is needed. */
    private static final JobOutcome UNKEPT = JobOutcome.UNKEPT;

    /** A job as its keeper's answers see it. */
    public interface Client {
        /** The job's own command runs; with a launcher this may be long after the request. */
        void started();

        /** The job and all its processes have ended. */
        void ended(JobOutcome outcome);
    }

    private final Path program;
    private final Process process;
    // Here, since in a full heap they could not be made when they are needed.
    private final Runnable heeding = this::heed;
    private final Runnable endingClients = this::endClients;
    /** What a client is told next; for the thread that listens alone. */
    private JobOutcome outcome;
    private final BiFunction<Long, Client, Client> endingClient = (id, client) -> {
        client.ended(outcome);
        return null;
    };
    private final MessageReader answers;
    private final OutputStream requests;
    /** Held while a request is written; a halted keeper may make that long. */
    private final ReentrantLock writing = new ReentrantLock();
    private final Map<Long, Client> clients = new ConcurrentHashMap<>();
    /** Opened by the first answer, or by the end when there was none. */
    private final CountDownLatch introduced = new CountDownLatch(1);
    private Message introduction;
    private volatile boolean gone;
    private volatile boolean pingUnanswered;
    private int warnings;

    private Keeper(Path program, Process process) {
        this.program = program;
        this.process = process;
        answers = new MessageReader(process.getInputStream());
        requests = process.getOutputStream();
    }

    /**
     * Starts that program as the keeper of the program that holds the lock file. It has, and hands
     * on to jobs, what the calling thread has at this moment: rights, environment, limits.
     */
    static Keeper start(Path program, Path lock) throws GridException {
        Process process;
        try {
            process = new ProcessBuilder(program.toString(), "serve", lock.toString())
                              .redirectError(ProcessBuilder.Redirect.INHERIT)
                              .start();
        } catch (IOException e) {
            throw new GridException(Status.NOT_FOUND,
                    "jobs cannot be run: " + program + " does not start: " + reason(e));
        }
        boolean ready = false;
        try {
            Keeper keeper = new Keeper(program, process);
            GridThreads.start("vantiro-keeper", keeper::listen);
            keeper.awaitIntroduction();
            ready = true;
            return keeper;
        } finally {
            if (!ready) {
                process.destroyForcibly();
            }
        }
    }

    private static String reason(IOException e) {
        String text = String.valueOf(e.getMessage());
        int error = text.indexOf("error=");
        return error < 0 ? text : text.substring(text.indexOf(' ', error) + 1);
    }

    /** Its first answer tells that it is what it should be, and that it could start. */
    private void awaitIntroduction() throws GridException {
        try {
            if (!introduced.await(START_SECONDS, TimeUnit.SECONDS)) {
                throw unusable("does not answer");
            }
        } catch (InterruptedException e) {
            Thread.currentThread().interrupt();
            throw unusable("was not waited for");
        }
        if (introduction == null) {
            throw unusable("has ended at once; standard error may tell why");
        }
        if (introduction.trouble() != null) {
            throw unusable("is of another release than this archive: it answers \"" + introduction
                    + "\", and " + introduction.trouble());
        }
        if (introduction.is("refused")) {
            throw new GridException(
                    Status.WRONG_STATE, "jobs cannot be run: " + introduction.text("why"));
        }
        if (!introduction.is("ready")) {
            throw unusable("answers \"" + introduction + "\"");
        }
    }

    private GridException unusable(String what) {
        return new GridException(Status.NOT_FOUND, "jobs cannot be run: " + program + " " + what);
    }

    /** A text that is another's when that hands anything else on to its jobs. */
    String surroundings() {
        return introduction.text("surroundings");
    }

    public boolean isGone() {
        return gone;
    }

    boolean isBusy() {
        return !clients.isEmpty();
    }

    /** Has a job run; the number by which it is known here. */
    public long run(JobRequest request, Client client) throws GridException {
        long id = NUMBERS.nextLong() >>> 1;
        boolean requested = false;
        clients.put(id, client);
        try {
            send(request.message(id));
            // Looked at last: whoever ends the clients has set it first.
            requested = !gone;
        } catch (IOException e) {
            // The request is taken back, unless the end of the keeper was faster.
            requested = false;
        } finally {
            // A client that has been told its end must not be given another.
            requested = requested || clients.remove(id) == null;
        }
        if (!requested) {
            throw hasEnded();
        }
        return id;
    }

    private static GridException hasEnded() {
        return new GridException(
                Status.IO_ERROR, KeeperProgram.NAME + ", which looks after the jobs, was ended");
    }

    /** Has a job ended, if it still runs. */
    public void stop(long id) {
        tell(Message.of("stop").with("job", id));
    }

    /** Hands a line to a job's standard input. */
    public void input(long id, String line) {
        tell(Message.of("input").with("job", id).with("text", line));
    }

    private void tell(Message request) {
        try {
            send(request);
        } catch (IOException e) {
            // The keeper is gone, and its jobs with it; who listens to it says so.
            return;
        }
    }

    private void send(Message request) throws IOException {
        byte[] bytes = request.bytes();
        writing.lock();
        try {
            requests.write(bytes);
            requests.flush();
        } finally {
            writing.unlock();
        }
    }

    /** Asks for a sign of life. */
    void ping() {
        if (!pingUnanswered && !gone) {
            // Whoever is writing all the time waits for a keeper that does not read.
            pingUnanswered = true;
            if (writing.tryLock()) {
                try {
                    tell(Message.of("ping"));
                } finally {
                    writing.unlock();
                }
            }
        }
    }

    /** Wakes it up when the last ping was not answered. */
    void wakeIfSilent() {
        if (pingUnanswered && !gone) {
            pingUnanswered = false;
            wake();
        }
    }

    private void wake() {
        try {
            Process waking =
                    new ProcessBuilder(program.toString(), "continue", introduction.text("process"))
                            .redirectErrorStream(true)
                            .start();
            waking.waitFor(WAKE_SECONDS, TimeUnit.SECONDS);
            waking.destroyForcibly();
            waking.getInputStream().close();
            waking.getOutputStream().close();
        } catch (IOException | InterruptedException e) {
            warn("cannot be woken up: " + e.getMessage());
        }
    }

    /** Has it end with all its jobs, without waiting for that. */
    void end() {
        try {
            // Not through the buffer's end alone: the program's children may hold the pipe as well.
            if (writing.tryLock(WAKE_SECONDS, TimeUnit.SECONDS)) {
                try {
                    tell(Message.of("end"));
                    requests.close();
                } finally {
                    writing.unlock();
                }
            }
        } catch (IOException | InterruptedException e) {
            // It is gone already, or sees the program's end by itself.
            return;
        }
    }

    /** Waits until it has ended as it was asked to; one that was halted is woken up for that. */
    void awaitEnd(long millis) throws InterruptedException {
        if (!process.waitFor(WAKE_SECONDS, TimeUnit.SECONDS)) {
            wake();
            end();
            if (!process.waitFor(millis, TimeUnit.MILLISECONDS)) {
                process.destroyForcibly();
            }
        }
    }

    private void listen() {
        try {
            while (answers.next()) {
                GridThreads.untilMemory(heeding);
            }
        } catch (IOException e) {
            // That is what one that was killed sounds like.
            end();
        }
        gone = true;
        introduced.countDown();
        Keepers.holdIfProgramEnds();
        GridThreads.untilMemory(endingClients);
    }

    private void heed() {
        try {
            heed(answers.message());
        } catch (RuntimeException | LinkageError e) {
            warn("gave an answer that was not heeded: " + GridException.text(e));
        }
    }

    private void heed(Message answer) {
        if (introduction == null) {
            introduction = answer;
            introduced.countDown();
        } else if (answer.is("started") || answer.is("ended")) {
            heedOfJob(answer);
        } else if (answer.trouble() == null && answer.is("pong")) {
            pingUnanswered = false;
        } else if (answer.trouble() == null && answer.is("refused")) {
            warn("refuses a request: " + answer.text("why"));
        } else {
            warn("seems to say \"" + answer + "\", which is not understood");
        }
    }

    private void heedOfJob(Message answer) {
        long id = answer.number("job");
        Client client = clients.get(id);
        if (client == null) {
            warn("seems to speak of a job that nobody gave it: \"" + answer + "\"");
        } else if (answer.is("started")) {
            client.started();
        } else {
            outcome = JobOutcome.read(answer);
            clients.computeIfPresent(id, endingClient);
        }
    }

    /** Not more often than a reader can use: a job may write into the pipe. */
    private void warn(String what) {
        warnings++;
        try {
            if (warnings <= MOST_WARNINGS) {
                LOG.warning(KeeperProgram.NAME + " " + what
                        + (warnings == MOST_WARNINGS ? "; more of that kind is not told" : ""));
            }
        } catch (OutOfMemoryError | LinkageError e) {
            // A log that never found the memory to be opened must not end a thread.
            return;
        }
    }

    private void endClients() {
        outcome = UNKEPT;
        for (Long id : clients.keySet()) {
            clients.computeIfPresent(id, endingClient);
        }
    }
}
