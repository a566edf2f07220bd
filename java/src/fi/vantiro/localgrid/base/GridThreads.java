package fi.vantiro.localgrid.base;

import java.util.concurrent.TimeUnit;
import java.util.concurrent.locks.LockSupport;

/** The grid's own threads; they never keep the Java virtual machine alive. */
public final class GridThreads {
    private static final long PAUSE_NANOS = TimeUnit.MILLISECONDS.toNanos(50);

    private GridThreads() {}

    private static final class GridThread extends Thread {
        GridThread(Runnable work, String name) {
            super(work, name);
            setDaemon(true);
        }
    }

    public static Thread make(String name, Runnable work) {
        return new GridThread(work, name);
    }

    public static Thread start(String name, Runnable work) {
        Thread thread = make(name, work);
        thread.start();
        return thread;
    }

    /**
     * Whether the calling thread is one of the grid's, as it is in a receiver of intermediate
     * results. Such a thread must not wait for jobs, which may be waiting for it.
     */
    public static boolean isCurrent() {
        return Thread.currentThread() instanceof GridThread;
    }

    /** A pause after which what others wait for is tried again in a heap that was full. */
    public static void awaitMemory() {
        try {
            LockSupport.parkNanos(PAUSE_NANOS);
        } catch (OutOfMemoryError e) {
            // The first call loads a class; without the memory for it there is no pause.
            return;
        }
    }
}
