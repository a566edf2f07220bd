package fi.vantiro.localgrid.process;

import fi.vantiro.localgrid.base.GridException;
import fi.vantiro.localgrid.base.GridThreads;
import fi.vantiro.localgrid.base.NativeText;
import fi.vantiro.localgrid.base.Status;
import fi.vantiro.localgrid.files.AtomicFile;
import java.io.EOFException;
import java.io.IOException;
import java.io.InputStream;
import java.io.OutputStream;
import java.net.URISyntaxException;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.nio.file.Path;
import java.nio.file.Paths;
import java.util.ArrayList;
import java.util.List;
import java.util.Map;
import java.util.Set;
import java.util.concurrent.ConcurrentHashMap;
import java.util.concurrent.TimeUnit;
import java.util.concurrent.locks.LockSupport;

/**
 * The native process that starts this program's jobs, looks after all that they start, and ends it
 * when it is told to, when a job ends, and when the program is gone.
 */
public final class Keeper {
    static final String NAME = "vantiro-keeper";

    private static final int MAX_ANSWER = 512;
    private static final int PATIENCE_SECONDS = 15;
    private static final Set<Keeper> RUNNING = ConcurrentHashMap.newKeySet();
    /** Here, since in a full heap its class could not be loaded when it is needed. */
    private static final JobOutcome UNKEPT = JobOutcome.UNKEPT;
    /** From then on nobody is told anything: that jobs end now is no failure of theirs. */
    private static volatile boolean programEnds;

    static {
        Runtime.getRuntime().addShutdownHook(new Thread(Keeper::endAll));
    }

    /** A job as its keeper's answers see it. */
    public interface Client {
        /** The job's own command runs; with a launcher this may be long after the request. */
        void started();

        /** The job and all its processes have ended. */
        void ended(JobOutcome outcome);
    }

    private final Process process;
    private final OutputStream requests;
    private final int patience;
    private final Map<Integer, Client> clients = new ConcurrentHashMap<>();
    private int lastId;
    private final byte[] answer = new byte[MAX_ANSWER];
    private int answerLength;
    // Here, since in a full heap they could not be made when they are needed.
    private final Runnable heeding = this::heed;
    private final Runnable endingClients = this::endClients;
    private boolean gone;

    private Keeper(Process process, int patience) {
        this.process = process;
        this.patience = patience;
        requests = process.getOutputStream();
    }

    /** Starts a keeper for the program that holds the lock file. */
    public static Keeper start(Path lock, int graceSeconds) throws GridException, IOException {
        Path program = program();
        String self = Paths.get("/proc/self").toRealPath().getFileName().toString();
        Process process;
        try {
            process = new ProcessBuilder(program.toString(), "serve", self, lock.toString())
                              .redirectError(ProcessBuilder.Redirect.INHERIT)
                              .start();
        } catch (IOException e) {
            throw new GridException(Status.NOT_FOUND,
                    "jobs cannot be run: " + program + " does not start: " + reason(e));
        }
        Keeper keeper = new Keeper(process, PATIENCE_SECONDS + 2 * graceSeconds);
        boolean listening = false;
        try {
            keeper.awaitReady(program);
            GridThreads.start("vantiro-keeper", keeper::listen);
            RUNNING.add(keeper);
            listening = true;
        } finally {
            if (!listening) {
                process.destroy();
            }
        }
        return keeper;
    }

    /** Its first answer tells that it is what it should be, and that it could start. */
    private void awaitReady(Path program) throws GridException {
        try {
            read(process.getInputStream(), new byte[MAX_ANSWER]);
        } catch (IOException e) {
            throw new GridException(Status.NOT_FOUND,
                    "jobs cannot be run: " + program
                            + " has ended at once; standard error may tell why");
        }
    }

    /** The keeper's program, which lies beside the archive of this class. */
    public static Path program() throws GridException {
        try {
            Path archive = Paths.get(
                    Keeper.class.getProtectionDomain().getCodeSource().getLocation().toURI());
            Path program = archive.resolveSibling(NAME);
            if (Files.isExecutable(program)) {
                return program;
            }
            throw new GridException(Status.NOT_FOUND,
                    "jobs cannot be run: there is no program " + NAME + " beside " + archive
                            + "; it belongs to the archive and looks after the jobs' processes");
        } catch (URISyntaxException e) {
            throw new GridException(Status.NOT_FOUND, "jobs cannot be run: " + e.getMessage());
        }
    }

    /**
     * The same program in a directory that other machines see too, under a name of this version:
     * programs of several versions may use one home.
     */
    public static Path programIn(Path home) throws GridException, IOException {
        Path program = program();
        Path copy = home.resolve(NAME + "-" + Files.size(program) + "-"
                + Files.getLastModifiedTime(program).toMillis());
        if (!Files.exists(copy)) {
            AtomicFile.copy(program, copy);
        }
        return copy;
    }

    private static String reason(IOException e) {
        String text = String.valueOf(e.getMessage());
        int error = text.indexOf("error=");
        return error < 0 ? text : text.substring(text.indexOf(' ', error) + 1);
    }

    public synchronized boolean isGone() {
        return gone;
    }

    /** Has the job of that file run; the number by which it is known here. */
    public synchronized int run(Path jobFile, Client client) throws GridException {
        if (gone) {
            throw hasEnded();
        }
        int id = ++lastId;
        boolean requested = false;
        clients.put(id, client);
        try {
            request("run " + id + " " + jobFile);
            requested = true;
        } catch (IOException e) {
            throw hasEnded();
        } finally {
            if (!requested) {
                clients.remove(id);
            }
        }
        return id;
    }

    /** Has a job ended, if it still runs. */
    public synchronized void stop(int id) {
        tell("stop " + id);
    }

    /** Lets a job have what was added to the file of its input. */
    public synchronized void input(int id) {
        tell("input " + id);
    }

    private static GridException hasEnded() {
        return new GridException(Status.IO_ERROR, NAME + ", which looks after the jobs, was ended");
    }

    private void tell(String text) {
        try {
            request(text);
        } catch (IOException e) {
            // The keeper is gone, and its jobs with it; who listens to it says so.
            return;
        }
    }

    private void request(String text) throws IOException {
        requests.write((text + "\0").getBytes(NativeText.charset()));
        requests.flush();
    }

    private void listen() {
        try (InputStream answers = process.getInputStream()) {
            while (true) {
                answerLength = read(answers, answer);
                GridThreads.untilMemory(heeding);
            }
        } catch (IOException e) {
            GridThreads.untilMemory(endingClients);
        }
    }

    private static int read(InputStream answers, byte[] answer) throws IOException {
        int length = 0;
        for (int next = answers.read(); next != 0; next = answers.read()) {
            if (next < 0 || length == answer.length) {
                throw new EOFException();
            }
            answer[length++] = (byte) next;
        }
        return length;
    }

    private void heed() {
        String[] words = new String(answer, 0, answerLength, StandardCharsets.UTF_8).split(" ", 3);
        Integer id = Integer.valueOf(words[0]);
        Client client = clients.get(id);
        if (client == null) {
            return;
        }
        if (words[1].equals("started")) {
            client.started();
        } else {
            client.ended(JobOutcome.parse(words[2]));
            clients.remove(id);
        }
    }

    private void endClients() {
        synchronized (this) {
            gone = true;
        }
        RUNNING.remove(this);
        holdIfProgramEnds();
        for (Map.Entry<Integer, Client> client : clients.entrySet()) {
            client.getValue().ended(UNKEPT);
            clients.remove(client.getKey());
        }
    }

    /** Ends the keeper, and what jobs it may still have. */
    public void close() {
        try {
            requests.close();
            process.waitFor(patience, TimeUnit.SECONDS);
        } catch (IOException e) {
            return;
        } catch (InterruptedException e) {
            Thread.currentThread().interrupt();
        }
    }

    private static void endAll() {
        programEnds = true;
        List<Keeper> keepers = new ArrayList<>(RUNNING);
        try {
            for (Keeper keeper : keepers) {
                keeper.requests.close();
            }
            for (Keeper keeper : keepers) {
                keeper.process.waitFor(keeper.patience, TimeUnit.SECONDS);
            }
        } catch (IOException | InterruptedException e) {
            // There is nobody left to tell; the keeper sees the program's end by itself.
            return;
        }
    }

    /** Keeps a thread that would tell of an end from doing so while the program ends. */
    public static void holdIfProgramEnds() {
        while (programEnds) {
            LockSupport.park();
        }
    }
}
