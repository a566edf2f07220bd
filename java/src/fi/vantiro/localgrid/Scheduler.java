package fi.vantiro.localgrid;

import java.util.concurrent.PriorityBlockingQueue;
import java.util.concurrent.ThreadPoolExecutor;
import java.util.concurrent.TimeUnit;
import java.util.concurrent.atomic.AtomicLong;

/** Runs as many jobs at once as there are processors: higher priority first, then first come. */
final class Scheduler {
    private static final int IDLE_SECONDS = 5;

    private final AtomicLong submitted = new AtomicLong();
    private final ThreadPoolExecutor workers;

    Scheduler(int processors) {
        workers = new ThreadPoolExecutor(processors, processors, IDLE_SECONDS, TimeUnit.SECONDS,
                new PriorityBlockingQueue<>(), JobThread::new);
        workers.allowCoreThreadTimeOut(true);
    }

    /**
     * Whether the calling thread runs a job, as it does in a receiver of intermediate results. Such
     * a thread must not wait for jobs, which may be waiting for it.
     */
    static boolean isJobThread() {
        return Thread.currentThread() instanceof JobThread;
    }

    int processors() {
        return workers.getCorePoolSize();
    }

    void submit(int priority, Runnable work) {
        workers.execute(new Entry(priority, submitted.incrementAndGet(), work));
    }

    private static final class JobThread extends Thread {
        JobThread(Runnable work) {
            super(work, "vantiro-job");
            setDaemon(true);
        }
    }

    private static final class Entry implements Runnable, Comparable<Entry> {
        private final int priority;
        private final long number;
        private final Runnable work;

        Entry(int priority, long number, Runnable work) {
            this.priority = priority;
            this.number = number;
            this.work = work;
        }

        @Override
        public void run() {
            work.run();
        }

        @Override
        public int compareTo(Entry other) {
            int order = Integer.compare(other.priority, priority);
            return order == 0 ? Long.compare(number, other.number) : order;
        }
    }
}
