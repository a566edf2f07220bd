package fi.vantiro.localgrid.project;

import fi.vantiro.localgrid.base.Arguments;
import fi.vantiro.localgrid.base.GridException;
import fi.vantiro.localgrid.base.LastError;
import fi.vantiro.localgrid.base.Log;
import fi.vantiro.localgrid.base.NativeText;
import fi.vantiro.localgrid.base.Status;
import fi.vantiro.localgrid.job.Job;
import fi.vantiro.localgrid.job.JobEngine;
import fi.vantiro.localgrid.job.JobList;
import fi.vantiro.localgrid.job.JobOwner;
import fi.vantiro.localgrid.job.JobRun;
import fi.vantiro.localgrid.job.JobWork;
import fi.vantiro.localgrid.process.JobOutcome;
import java.io.IOException;
import java.util.ArrayDeque;
import java.util.ArrayList;
import java.util.Deque;
import java.util.List;
import java.util.Map;
import java.util.logging.Level;
import java.util.logging.Logger;

/** The jobs of a project: created, started, waited for and stopped together. */
public final class ProjectJobs implements JobOwner {
    private static final Logger LOG = Logger.getLogger(Log.NAME);

    /** The states of a project; their order is the numbers that callers see. */
    public enum State { CREATED, RUNNING, COMPLETED, FAILED, STOPPED }

    private final ProjectInfo project;
    private final JobEngine engine;
    private final JobWork work;
    private final Listener listener;
    private final JobList jobs = new JobList();
    private final Deque<List<String>> cached = new ArrayDeque<>();
    private boolean started;
    private boolean allCreated;
    private boolean stopped;
    private long startedAt;
    private long endedAt;
    private long cpuMillis;

    /** Who learns what happens to the jobs. */
    interface Listener {
        /** A job or the project is in another state. */
        void changed();

        /** A job has failed. */
        void failed(GridException failure);

        /** All jobs have ended, and no more can follow. */
        void completed();
    }

    ProjectJobs(ProjectInfo project, JobEngine engine, JobWork work, Listener listener) {
        this.project = project;
        this.engine = engine;
        this.work = work;
        this.listener = listener;
    }

    /** Creates a job, which runs as soon as the project does; its number. */
    public synchronized int create(List<String> command) throws GridException {
        checkAccepts(command);
        Job job = jobs.add(new ArrayList<>(command));
        boolean submitted = false;
        try {
            if (started) {
                submit(job.number);
            }
            submitted = true;
        } finally {
            if (!submitted) {
                jobs.removeLast();
            }
        }
        return job.number;
    }

    /** Creates one job for each line, which the shell runs; the number of lines. */
    public synchronized int createAll(String[] lines) throws GridException {
        for (String line : lines) {
            checkAccepts(Job.shellLine(line));
        }
        for (String line : lines) {
            create(Job.shellLine(line));
        }
        return lines.length;
    }

    /** Keeps a job aside; how many are aside now. */
    public synchronized int cache(List<String> command) throws GridException {
        checkAccepts(command);
        cached.add(new ArrayList<>(command));
        return cached.size();
    }

    /** Creates the jobs kept aside; how many. */
    public synchronized int flushCached() throws GridException {
        int count = cached.size();
        while (!cached.isEmpty()) {
            create(cached.element());
            cached.remove();
        }
        return count;
    }

    private void checkAccepts(List<String> command) throws GridException {
        if (command.isEmpty() || command.get(0).isEmpty()) {
            throw new IllegalArgumentException("a job needs a command");
        }
        command.forEach(NativeText::bytes);
        if (allCreated || stopped) {
            throw wrongState(stopped ? "was stopped" : "has all its jobs created already");
        }
    }

    /** Declares that no more jobs follow. */
    public synchronized void markAllCreated() throws GridException {
        if (!cached.isEmpty()) {
            throw wrongState("still has " + cached.size() + " cached jobs to flush");
        }
        allCreated = true;
        changed();
    }

    /** Does what cannot be done any more when the jobs run. */
    synchronized void beforeStart(LastError.Action action)
            throws GridException, IOException, InterruptedException {
        checkNotStarted();
        action.run();
    }

    private void checkNotStarted() throws GridException {
        if (started || stopped) {
            throw wrongState(stopped ? "was stopped" : "is started already");
        }
    }

    /** Lets the jobs run; a start that failed has changed nothing. */
    public synchronized void start() throws GridException, IOException {
        checkNotStarted();
        boolean submitted = false;
        try {
            work.open();
            started = true;
            startedAt = System.nanoTime();
            submit(1);
            submitted = true;
        } finally {
            if (!submitted) {
                started = false;
                engine.drop(this);
                work.close();
            }
        }
        changed();
    }

    /** Lets the jobs from that number on wait for their turn. */
    private void submit(int first) {
        engine.submit(this, project.priority(), first, jobs.size() + 1);
    }

    /** Has the running jobs killed and drops the waiting ones. */
    public void stop() throws InterruptedException {
        requestStop();
        awaitEnd();
    }

    /** The same, without waiting for the jobs to end. */
    public synchronized void requestStop() {
        if (isCompleted()) {
            return;
        }
        stopped = true;
        engine.drop(this);
        jobs.forEach(job -> {
            if (job.run != null) {
                job.run.stop();
            } else if (job.state == Job.State.WAITING) {
                move(job, Job.State.STOPPED);
            }
        });
        changed();
    }

    /** Waits for the jobs that were let run. */
    public synchronized void awaitEnd() throws InterruptedException {
        while (started && jobs.ended() < jobs.size()) {
            wait();
        }
    }

    /** Waits for all jobs; an exception unless every one succeeded. */
    public synchronized void awaitCompletion() throws GridException, InterruptedException {
        if (!stopped && !(started && allCreated)) {
            throw wrongState(started ? "is not marked as having all its jobs" : "is not started");
        }
        while (!isCompleted()) {
            wait();
        }
        checkSuccess();
    }

    /** Waits that long at the most; whether all jobs have ended. */
    public synchronized boolean awaitCompletion(long millis) throws InterruptedException {
        if (!isCompleted()) {
            wait(millis);
        }
        return isCompleted();
    }

    /** Fails when the project was stopped or a job has failed. */
    private void checkSuccess() throws GridException {
        if (stopped) {
            throw new GridException(Status.STOPPED, project + " was stopped");
        }
        if (isFailed()) {
            throw new GridException(Status.JOB_FAILED, jobs.failures());
        }
    }

    /** Waits until more jobs than those known have ended, or the project has; how many ended. */
    synchronized int awaitEnded(int known) throws InterruptedException {
        while (jobs.ended() == known && !isCompleted()) {
            wait();
        }
        return jobs.ended();
    }

    /** Hands a line to the standard input of a job that has not ended. */
    public synchronized void send(long number, String text) throws GridException, IOException {
        Job job = jobs.get(number);
        NativeText.checked(Arguments.required(text, "the parameter"));
        if (job.state.ended()) {
            throw new GridException(
                    Status.WRONG_STATE, "job " + number + " of " + project + " has ended");
        }
        if (job.run != null) {
            job.run.send(text);
        } else {
            job.addInput(text);
        }
    }

    public synchronized boolean isCompleted(long number) {
        return jobs.get(number).state.ended();
    }

    /** Whether every job has ended and no more can follow. */
    public synchronized boolean isCompleted() {
        return (stopped || started && allCreated) && jobs.ended() == jobs.size();
    }

    /** Whether a job has failed. */
    public synchronized boolean isFailed() {
        return jobs.count(Job.State.FAILED) > 0;
    }

    public synchronized State state() {
        if (stopped) {
            return State.STOPPED;
        }
        if (!isCompleted()) {
            return started ? State.RUNNING : State.CREATED;
        }
        return isFailed() ? State.FAILED : State.COMPLETED;
    }

    /** Milliseconds from start to end, or until now. */
    public synchronized long usedTime() {
        long end = endedAt == 0 ? System.nanoTime() : endedAt;
        return startedAt == 0 ? 0 : (end - startedAt) / 1_000_000;
    }

    /** Milliseconds of processor time of the ended jobs. */
    public synchronized long usedCpuTime() {
        return cpuMillis;
    }

    /** The statistics by their names. */
    public synchronized Map<String, Long> statistics() {
        Map<String, Long> values = jobs.statistics();
        values.put("usedTime", usedTime());
        values.put("usedCpuTime", usedCpuTime());
        return values;
    }

    @Override
    public JobWork work() {
        return work;
    }

    @Override
    public synchronized Job begin(int number, JobRun run) {
        Job job = jobs.get(number);
        if (job.state != Job.State.WAITING) {
            return null;
        }
        job.run = run;
        return job;
    }

    @Override
    public synchronized void started(Job job) {
        if (job.state == Job.State.WAITING) {
            move(job, Job.State.RUNNING);
            changed();
        }
    }

    @Override
    public synchronized void ended(Job job, JobOutcome outcome, String failure) {
        job.run = null;
        if (!job.state.ended()) {
            if (failure != null && !stopped) {
                String text = "job " + job.number + " of " + project
                        + " failed: " + job.commandText() + ": " + failure;
                jobs.addFailure(job, text);
                listener.failed(new GridException(Status.JOB_FAILED, text));
            }
            cpuMillis += outcome == null ? 0 : outcome.cpuMillis;
            move(job,
                    failure == null   ? Job.State.COMPLETED
                            : stopped ? Job.State.STOPPED
                                      : Job.State.FAILED);
        }
        changed();
    }

    /** How many jobs are known now. */
    public synchronized int size() {
        return jobs.size();
    }

    private void move(Job job, Job.State state) {
        jobs.move(job, state);
        // Also when there is no memory for what nobody reads.
        if (LOG.isLoggable(Level.FINE)) {
            LOG.fine("job " + job.number + " of " + project + " is now " + state);
        }
    }

    private void changed() {
        if (endedAt == 0 && isCompleted()) {
            endedAt = System.nanoTime();
            work.close();
            listener.completed();
        }
        notifyAll();
        listener.changed();
    }

    private GridException wrongState(String what) {
        return new GridException(Status.WRONG_STATE, project + " " + what);
    }

    @Override
    public String toString() {
        return project.toString();
    }
}
