package fi.vantiro.localgrid.job;

import fi.vantiro.localgrid.base.GridThreads;
import java.io.Closeable;
import java.util.ArrayDeque;
import java.util.Comparator;
import java.util.Deque;
import java.util.PriorityQueue;

/**
 * Lets so many jobs run at once as there are places: higher priority first, then first come. A run
 * needs a thread when it has got its place and when it is resumed, and none in between.
 */
final class Scheduler implements Closeable {
    private static final int MOST_THREADS =
            Math.max(2, 2 * Runtime.getRuntime().availableProcessors());

    private final int places;
    private int taken;
    private long submitted;
    private int threads;
    private boolean closed;
    private final PriorityQueue<Entry> waiting = new PriorityQueue<>();
    /** Taken by what was submitted last, so that jobs which come one by one share an entry. */
    private Entry last;
    private final Deque<Runnable> resumed = new ArrayDeque<>();
    private final Turns turns;

    /** Makes what runs a job when the job has its turn: one that waits takes no memory. */
    @FunctionalInterface
    interface Turns {
        Runnable run(JobOwner owner, int job);
    }

    Scheduler(int places, Turns turns) {
        this.places = places;
        this.turns = turns;
    }

    /** Makes sure that jobs can run; a thread that is missing then would be missed for ever. */
    synchronized void startThreads() {
        while (threads < Math.min(places, MOST_THREADS)) {
            GridThreads.start("vantiro-job", this::serve);
            threads++;
        }
    }

    /** Lets an owner's jobs from one number to before another wait for their places. */
    synchronized void submit(JobOwner owner, int priority, int first, int end) {
        if (first == end) {
            return;
        }
        if (last != null && last.owner == owner && last.priority == priority && last.end == first
                && last.first < first) {
            last.end = end;
        } else {
            Entry entry = new Entry(owner, priority, ++submitted, first, end);
            waiting.add(entry);
            last = entry;
        }
        notifyAll();
    }

    /** Forgets what an owner has waiting. */
    synchronized void drop(JobOwner owner) {
        waiting.removeIf(entry -> entry.owner == owner);
        last = null;
    }

    /** Has a run that has its place go on. */
    synchronized void resume(Runnable run) {
        resumed.add(run);
        notify();
    }

    /** Gives the place of a run that is over to the next. */
    synchronized void release() {
        taken--;
        notify();
    }

    /** Ends the threads when they have done what is left. */
    @Override
    public synchronized void close() {
        closed = true;
        notifyAll();
    }

    private void serve() {
        GridThreads.untilMemory(this::serveAll);
    }

    private void serveAll() {
        for (Runnable run = next(); run != null; run = next()) {
            run.run();
        }
    }

    /** What a thread is to do next; null when it is to end. */
    private synchronized Runnable next() {
        while (true) {
            if (!resumed.isEmpty()) {
                return resumed.remove();
            }
            if (taken < places && !waiting.isEmpty()) {
                return begin(waiting.element());
            }
            if (closed) {
                return null;
            }
            try {
                wait();
            } catch (InterruptedException e) {
                // Nobody has a reason to interrupt these threads, and the jobs need them.
                continue;
            }
        }
    }

    private Runnable begin(Entry entry) {
        Runnable run = turns.run(entry.owner, entry.first);
        taken++;
        entry.first++;
        if (entry.first == entry.end) {
            waiting.remove(entry);
        }
        return run;
    }

    /** Jobs of one owner that follow each other. */
    private static final class Entry implements Comparable<Entry> {
        private static final Comparator<Entry> ORDER =
                Comparator.<Entry>comparingInt(entry -> entry.priority)
                        .reversed()
                        .thenComparingLong(entry -> entry.number);

        private final JobOwner owner;
        private final int priority;
        private final long number;
        private int first;
        private int end;

        Entry(JobOwner owner, int priority, long number, int first, int end) {
            this.owner = owner;
            this.priority = priority;
            this.number = number;
            this.first = first;
            this.end = end;
        }

        @Override
        public int compareTo(Entry other) {
            return ORDER.compare(this, other);
        }
    }
}
