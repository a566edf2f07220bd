package fi.vantiro.localgrid.base;

import java.util.concurrent.TimeUnit;
import java.util.concurrent.locks.LockSupport;

/** The grid's own threads; they never keep the Java virtual machine alive. */
public final class GridThreads {
    private static final long PAUSE_NANOS = TimeUnit.MILLISECONDS.toNanos(50);

    private GridThreads() {}

    public static Thread start(String name, Runnable work) {
        Thread thread = new Thread(work, name);
        thread.setDaemon(true);
        thread.start();
        return thread;
    }

    /**
     * Does what others wait for, again and again as long as the heap is too full for it. The work
     * is an object that is there already: in a full heap none could be made.
     */
    public static void untilMemory(Runnable work) {
        while (!isDone(work)) {
            pause();
        }
    }

    private static boolean isDone(Runnable work) {
        try {
            work.run();
            return true;
        } catch (OutOfMemoryError e) {
            return false;
        }
    }

    private static void pause() {
        try {
            LockSupport.parkNanos(PAUSE_NANOS);
        } catch (OutOfMemoryError e) {
            // The first call loads a class; without the memory for it there is no pause.
            return;
        }
    }
}
