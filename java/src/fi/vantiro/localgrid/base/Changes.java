package fi.vantiro.localgrid.base;

import java.util.concurrent.TimeUnit;

/** Lets threads wait for any change of state in the grid. */
public final class Changes {
    private long count;

    public synchronized void signal() {
        count++;
        notifyAll();
    }

    /** Whether something changed within that time. */
    public synchronized boolean await(long millis) throws InterruptedException {
        long seen = count;
        long end = System.nanoTime() + TimeUnit.MILLISECONDS.toNanos(millis);
        for (long left = end - System.nanoTime(); count == seen && left > 0;
                left = end - System.nanoTime()) {
            TimeUnit.NANOSECONDS.timedWait(this, left);
        }
        return count != seen;
    }
}
