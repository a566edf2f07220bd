package fi.vantiro.localgrid.job;

import fi.vantiro.localgrid.base.GridThreads;
import fi.vantiro.localgrid.project.Project;
import java.util.Comparator;
import java.util.PriorityQueue;
import java.util.concurrent.LinkedBlockingQueue;
import java.util.concurrent.ThreadPoolExecutor;
import java.util.concurrent.TimeUnit;

/** Lets so many jobs run at once as there are places: higher priority first, then first come. */
public final class Scheduler {
    /** Threads prepare jobs and collect their results; while a job runs it needs none. */
    private static final int MOST_THREADS = 2 * Runtime.getRuntime().availableProcessors();

    private final int places;
    private int taken;
    private long submitted;
    private final PriorityQueue<Entry> waiting = new PriorityQueue<>();
    private final ThreadPoolExecutor threads;

    public Scheduler(int places) {
        this.places = places;
        int count = Math.min(places, Math.max(2, MOST_THREADS));
        threads = new ThreadPoolExecutor(count, count, 0, TimeUnit.SECONDS,
                new LinkedBlockingQueue<>(), work -> GridThreads.make("vantiro-job", work));
    }

    public int places() {
        return places;
    }

    /** Makes sure that jobs can run; a thread that is missing then would be missed for ever. */
    public void startThreads() {
        threads.prestartAllCoreThreads();
    }

    public synchronized void submit(int priority, JobRun run) {
        waiting.add(new Entry(priority, ++submitted, run));
        fill();
    }

    /** Forgets what a project has waiting. */
    public synchronized void drop(Project project) {
        waiting.removeIf(entry -> entry.run.project() == project);
    }

    /** Gives the place of a job that has ended to the next. */
    void release() {
        giveBack();
        while (!isFilled()) {
            GridThreads.awaitMemory();
        }
    }

    private synchronized void giveBack() {
        taken--;
    }

    private synchronized boolean isFilled() {
        try {
            fill();
            return true;
        } catch (OutOfMemoryError e) {
            return false;
        }
    }

    /** Has a job that has its place go on. */
    void resume(JobRun run) {
        threads.execute(run);
    }

    private void fill() {
        while (taken < places && !waiting.isEmpty()) {
            threads.execute(waiting.element().run);
            waiting.remove();
            taken++;
        }
    }

    private static final class Entry implements Comparable<Entry> {
        private static final Comparator<Entry> ORDER =
                Comparator.<Entry>comparingInt(entry -> - entry.priority)
                        .thenComparingLong(entry -> entry.number);

        private final int priority;
        private final long number;
        private final JobRun run;

        Entry(int priority, long number, JobRun run) {
            this.priority = priority;
            this.number = number;
            this.run = run;
        }

        @Override
        public int compareTo(Entry other) {
            return ORDER.compare(this, other);
        }
    }
}
