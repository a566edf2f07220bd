package fi.vantiro.localgrid.process;

import fi.vantiro.localgrid.base.GridException;
import fi.vantiro.localgrid.base.GridThreads;
import fi.vantiro.localgrid.base.Rights;
import fi.vantiro.localgrid.base.Status;
import java.io.Closeable;
import java.io.IOException;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.Arrays;
import java.util.Collection;
import java.util.HashMap;
import java.util.List;
import java.util.Map;
import java.util.Set;
import java.util.concurrent.ConcurrentHashMap;
import java.util.concurrent.locks.LockSupport;
import java.util.stream.Collectors;

/**
 * The keepers of one grid: as many as its projects were started in different surroundings. A keeper
 * lives as long as a project uses it.
 */
public final class Keepers implements Closeable {
    private static final long BEAT_MILLIS = 1000;
    private static final long PATIENCE_MILLIS = 15_000;
    private static final Set<Keepers> OPEN = ConcurrentHashMap.newKeySet();
    /** From then on nobody is told anything: that jobs end now is no failure of theirs. */
    private static volatile boolean programEnds;

    static {
        Runtime.getRuntime().addShutdownHook(new Thread(Keepers::endAll));
    }

    /** Where the lock is by which others know that this program lives. */
    public interface OwnerLock {
        Path path() throws GridException, IOException;
    }

    private final Path program;
    private final OwnerLock lock;
    private final long patience;
    /** How many projects use each. */
    private final Map<Keeper, Integer> users = new HashMap<>();
    private Thread heart;
    private boolean closed;

    /** Launchers get the grace twice when their jobs are ended. */
    public Keepers(OwnerLock lock, long graceMillis) {
        this(null, lock, graceMillis);
    }

    /** With another program in the keeper's place. */
    Keepers(Path program, OwnerLock lock, long graceMillis) {
        this.program = program;
        this.lock = lock;
        patience = PATIENCE_MILLIS + 2 * Math.min(graceMillis, Long.MAX_VALUE / 4);
    }

    /**
     * A keeper whose jobs get what the program has now: its rights, its environment, its limits.
     * Only a process that is started now knows them, and it stays if there is none like it.
     */
    public Keeper ofThisMoment() throws GridException, IOException {
        return shared(start());
    }

    /**
     * Another one for a project whose keeper has gone, if its jobs find there what others found.
     */
    Keeper inPlaceOf(Keeper former) throws GridException, IOException {
        Keeper started = start();
        if (!started.surroundings().equals(former.surroundings())) {
            started.end();
            throw new GridException(Status.WRONG_STATE,
                    KeeperProgram.NAME + ", which looks after the jobs, was ended, and a new one "
                            + "would run the project's jobs with other "
                            + differences(former, started) + " than at its start");
        }
        release(former);
        return shared(started);
    }

    private static String differences(Keeper former, Keeper started) {
        List<String> before = Arrays.asList(former.surroundings().split(" "));
        return Arrays.stream(started.surroundings().split(" "))
                .filter(word -> !before.contains(word))
                .map(word -> word.substring(0, Math.max(0, word.indexOf(':'))))
                .collect(Collectors.joining(" and "));
    }

    private Keeper start() throws GridException, IOException {
        if (Rights.areBorrowed()) {
            throw new GridException(Status.WRONG_STATE, Rights.WHY_NO_JOBS);
        }
        return Keeper.start(program == null ? KeeperProgram.local() : program, lock.path());
    }

    private Keeper shared(Keeper started) throws GridException {
        boolean taken = false;
        try {
            synchronized (this) {
                if (closed) {
                    throw new GridException(Status.WRONG_STATE, "the grid has been closed");
                }
                Keeper keeper = users.keySet()
                                        .stream()
                                        .filter(earlier -> isLike(earlier, started))
                                        .findAny()
                                        .orElse(started);
                beginToBeat();
                users.merge(keeper, 1, Integer::sum);
                taken = keeper == started;
                return keeper;
            }
        } finally {
            if (!taken) {
                started.end();
            }
        }
    }

    private static boolean isLike(Keeper earlier, Keeper started) {
        return !earlier.isGone() && earlier.surroundings().equals(started.surroundings());
    }

    /** A project does not need it any more; the last one to say so ends it. */
    void release(Keeper keeper) {
        boolean unused;
        synchronized (this) {
            unused = users.merge(keeper, -1, Integer::sum) <= 0;
            if (unused) {
                users.remove(keeper);
            }
        }
        if (unused) {
            keeper.end();
        }
    }

    private void beginToBeat() {
        if (heart == null) {
            heart = GridThreads.start("vantiro-heartbeat", this::beat);
            OPEN.add(this);
        }
    }

    /** A job can halt its keeper; the ping also wakes up what the keeper has started. */
    private void beat() {
        for (boolean asking = true; isOpen(); asking = !asking) {
            try {
                for (Keeper keeper : keepers()) {
                    if (!asking) {
                        keeper.wakeIfSilent();
                    } else if (keeper.isBusy()) {
                        keeper.ping();
                    }
                }
            } catch (OutOfMemoryError | LinkageError e) {
                // The next beat may find the memory that this one missed.
                continue;
            }
        }
    }

    private synchronized boolean isOpen() {
        try {
            if (!closed) {
                wait(BEAT_MILLIS);
            }
        } catch (InterruptedException e) {
            return false;
        }
        return !closed;
    }

    private synchronized Collection<Keeper> keepers() {
        return new ArrayList<>(users.keySet());
    }

    /** Ends all keepers, with the jobs that they still have. */
    @Override
    public void close() {
        synchronized (this) {
            closed = true;
            notifyAll();
        }
        end(keepers());
        OPEN.remove(this);
    }

    private void end(Collection<Keeper> keepers) {
        keepers.forEach(Keeper::end);
        try {
            for (Keeper keeper : keepers) {
                keeper.awaitEnd(patience);
            }
        } catch (InterruptedException e) {
            // There is nobody left to tell; a keeper sees the program's end by itself.
            Thread.currentThread().interrupt();
        }
    }

    private static void endAll() {
        programEnds = true;
        for (Keepers keepers : OPEN) {
            keepers.end(keepers.keepers());
        }
    }

    /** Keeps a thread that would tell of an end from doing so while the program ends. */
    public static void holdIfProgramEnds() {
        while (programEnds) {
            LockSupport.park();
        }
    }
}
