package fi.vantiro.localgrid;

import java.io.IOException;
import java.nio.file.Path;
import java.util.ArrayDeque;
import java.util.ArrayList;
import java.util.Deque;
import java.util.List;
import java.util.Locale;
import java.util.Map;
import java.util.logging.Logger;

/** A number of jobs that are started, followed and stopped together. */
public final class Project {
    private static final Logger LOG = Logger.getLogger(Log.NAME);

    /** The states of a project; their order is the numbers that callers see. */
    public enum State { CREATED, RUNNING, COMPLETED, FAILED, STOPPED }

    private final int handle;
    private final Grid grid;
    private final ProjectDirectory directory;
    private final ProjectInfo info;
    private final Results results;
    private final ProjectBundles bundles;
    private final BackgroundWait backgroundWait = new BackgroundWait(this);

    private JobHooks hooks = JobHooks.NONE;

    private final JobList jobs = new JobList();
    private final Deque<List<String>> cached = new ArrayDeque<>();
    private final LineFollowers followers = new LineFollowers();
    private boolean started;
    private boolean allCreated;
    private boolean stopped;
    private boolean removed;
    private long startedAt;
    private long endedAt;
    private long cpuMillis;

    Project(int handle, Grid grid, ProjectDirectory directory, int priority, String name) {
        this.handle = handle;
        this.grid = grid;
        this.directory = directory;
        info = new ProjectInfo(name, priority, directory.number());
        results = new Results(directory, grid.settings());
        bundles = new ProjectBundles(grid.bundles());
    }

    public int handle() {
        return handle;
    }

    public ProjectInfo info() {
        return info;
    }

    public Results results() {
        return results;
    }

    public ProjectBundles bundles() {
        return bundles;
    }

    public BackgroundWait backgroundWait() {
        return backgroundWait;
    }

    ProjectDirectory directory() {
        return directory;
    }

    synchronized void setHooks(JobHooks hooks) {
        this.hooks = hooks;
    }

    synchronized JobHooks hooks() {
        return hooks;
    }

    Settings settings() {
        return grid.settings();
    }

    /** Changes the project's number, as long as no job has seen it. */
    public synchronized void setId(int id) throws GridException, IOException {
        if (started || stopped) {
            throw wrongState(stopped ? "was stopped" : "is started already");
        }
        grid.home().renumber(directory, id);
        info.setId(id);
    }

    /** Creates a job, which runs as soon as the project does; its number. */
    public synchronized int createJob(List<String> command) throws GridException {
        checkAccepts(command);
        Job job = jobs.add(new ArrayList<>(command));
        boolean submitted = false;
        try {
            if (started) {
                submit(job);
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
    public synchronized int createJobs(String[] lines) throws GridException {
        for (String line : lines) {
            checkAccepts(Job.shellLine(line));
        }
        for (String line : lines) {
            createJob(Job.shellLine(line));
        }
        return lines.length;
    }

    /** Keeps a job aside; how many are aside now. */
    public synchronized int cacheJob(List<String> command) throws GridException {
        checkAccepts(command);
        cached.add(new ArrayList<>(command));
        return cached.size();
    }

    /** Creates the jobs kept aside; how many. */
    public synchronized int flushCachedJobs() throws GridException {
        int count = cached.size();
        while (!cached.isEmpty()) {
            createJob(cached.element());
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
    public synchronized void markAllJobsCreated() throws GridException {
        if (!cached.isEmpty()) {
            throw wrongState("still has " + cached.size() + " cached jobs to flush");
        }
        allCreated = true;
        changed();
    }

    /** Lets the jobs run; a start that failed has changed nothing. */
    public synchronized void start() throws GridException, IOException {
        if (started || stopped) {
            throw wrongState(stopped ? "was stopped" : "is started already");
        }
        grid.keeper();
        grid.scheduler().startThreads();
        boolean submitted = false;
        try {
            started = true;
            startedAt = System.nanoTime();
            jobs.forEach(this::submit);
            submitted = true;
        } finally {
            if (!submitted) {
                started = false;
                scheduler().drop(this);
            }
        }
        changed();
    }

    private void submit(Job job) {
        scheduler().submit(info.priority(), new JobRun(this, job));
    }

    /** Has the running jobs killed and drops the waiting ones. */
    public void stop() throws InterruptedException {
        requestStop();
        awaitJobs();
    }

    /** The same, without waiting for the jobs to end. */
    synchronized void requestStop() {
        if (isCompleted()) {
            return;
        }
        stopped = true;
        scheduler().drop(this);
        jobs.forEach(job -> {
            if (job.run != null) {
                job.run.stop();
            } else if (job.state == Job.State.WAITING) {
                move(job, Job.State.STOPPED);
            }
        });
        changed();
    }

    /** Stops the project and deletes its files, at once or when the last of its jobs has ended. */
    void remove() throws IOException, InterruptedException {
        stop();
        synchronized (this) {
            if (jobs.ended() < jobs.size()) {
                removed = true;
                return;
            }
        }
        directory.deleteResults();
    }

    /** Waits for the jobs that were let run; a thread of the grid does not wait. */
    synchronized void awaitJobs() throws InterruptedException {
        while (started && jobs.ended() < jobs.size() && !GridThreads.isCurrent()) {
            wait();
        }
    }

    /** Waits for all jobs; an exception unless every one succeeded. */
    public synchronized void awaitCompletion() throws GridException, InterruptedException {
        if (!stopped && !(started && allCreated)) {
            throw wrongState(started ? "is not marked as having all its jobs" : "is not started");
        }
        if (GridThreads.isCurrent()) {
            throw wrongState("cannot be waited for by a thread that runs a job");
        }
        while (!isCompleted()) {
            wait();
        }
        if (stopped) {
            throw new GridException(Status.STOPPED, this + " was stopped");
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
    public synchronized void sendToJob(long number, String text) throws GridException, IOException {
        Job job = jobs.get(number);
        Arguments.required(text, "the parameter");
        if (job.state.ended()) {
            throw new GridException(
                    Status.WRONG_STATE, "job " + number + " of " + this + " has ended");
        }
        if (job.run != null) {
            job.run.send(text);
        } else {
            directory.job(job.number).addInput(text);
        }
    }

    public synchronized boolean isJobCompleted(long number) {
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

    /** One line for people. */
    public synchronized String description() {
        return info + ", " + jobs.size() + " jobs, " + state().name().toLowerCase(Locale.ROOT)
                + ")";
    }

    /** The variables that each job finds in its environment. */
    synchronized Map<String, String> environment(Job job) throws GridException, IOException {
        Map<String, String> variables = info.environment();
        variables.put("VANTIRO_JOB", String.valueOf(job.number));
        variables.put("VANTIRO_JOBS", String.valueOf(jobs.size()));
        variables.put("VANTIRO_WORKDIR", directory.work(job.number).toString());
        variables.put("VANTIRO_NAME",
                "vantiro-" + grid.ownerLock().getFileName() + "-" + directory.number() + "-"
                        + job.number);
        variables.put("TMPDIR", grid.settings().tempDir.toString());
        return variables;
    }

    /** Gives a waiting job its turn; false when it is not to run any more. */
    synchronized boolean begin(Job job, JobRun run) {
        if (job.state != Job.State.WAITING) {
            return false;
        }
        job.run = run;
        return true;
    }

    /** Takes note that a job's own command runs. */
    synchronized void started(Job job) {
        if (job.state == Job.State.WAITING) {
            move(job, Job.State.RUNNING);
            changed();
        }
    }

    /** Leaves word of a job for its keeper. */
    void writeJobFile(JobFile file, Path work, Map<String, String> environment,
            List<String> command) throws GridException, IOException {
        file.write(work, settings(), grid.ownerLock(), grid.farKeeper(), environment, command);
    }

    Keeper keeper() throws GridException, IOException {
        return grid.keeper();
    }

    Scheduler scheduler() {
        return grid.scheduler();
    }

    LineFollowers followers() {
        return followers;
    }

    synchronized void addCpuTime(long millis) {
        cpuMillis += millis;
    }

    /** Downloads the results, with partial also those of a project that goes on; how many. */
    public int download(boolean partial) throws GridException, IOException {
        if (!partial && !isCompleted()) {
            throw wrongState("is not completed");
        }
        return results.download();
    }

    /** Takes note of the end of a job; a failure of null is success. */
    void end(Job job, String failure) {
        while (!isEndNoted(job, failure)) {
            GridThreads.awaitMemory();
        }
        if (isRemovedAndOver()) {
            try {
                directory.deleteResults();
            } catch (IOException e) {
                report("cannot remove its files", e);
            }
        }
    }

    private boolean isEndNoted(Job job, String failure) {
        try {
            noteEnd(job, failure);
            return true;
        } catch (OutOfMemoryError e) {
            return false;
        }
    }

    private synchronized void noteEnd(Job job, String failure) {
        job.run = null;
        if (!job.state.ended()) {
            if (failure != null && !stopped) {
                job.failure = "job " + job.number + " of " + this
                        + " failed: " + Arguments.shortened(job.commandText()) + ": " + failure;
                grid.errors().record(new GridException(Status.JOB_FAILED, job.failure));
            }
            move(job,
                    failure == null   ? Job.State.COMPLETED
                            : stopped ? Job.State.STOPPED
                                      : Job.State.FAILED);
        }
        changed();
    }

    private synchronized boolean isRemovedAndOver() {
        return removed && jobs.ended() == jobs.size();
    }

    private void move(Job job, Job.State state) {
        jobs.move(job, state);
        LOG.fine(() -> "job " + job.number + " of " + this + " is now " + state);
    }

    private void changed() {
        if (endedAt == 0 && isCompleted()) {
            endedAt = System.nanoTime();
            try {
                directory.markEnded();
            } catch (IOException e) {
                report("cannot mark it as ended", e);
            }
        }
        notifyAll();
        grid.changes().signal();
    }

    /** Remembers a failure that no caller waits for. */
    void report(String what, IOException e) {
        report(what, GridException.of(e));
    }

    void report(String what, GridException failure) {
        grid.errors().record(new GridException(
                failure.status(), this + ": " + what + ": " + failure.getMessage()));
    }

    private GridException wrongState(String what) {
        return new GridException(Status.WRONG_STATE, this + " " + what);
    }

    @Override
    public String toString() {
        return "project " + info.id() + " (" + Arguments.shortened(info.name()) + ")";
    }
}
