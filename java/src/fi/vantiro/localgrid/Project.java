package fi.vantiro.localgrid;

import java.io.IOException;
import java.util.ArrayList;
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
    private final List<List<String>> cached = new ArrayList<>();
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
        if (started) {
            submit(job);
        }
        return job.number;
    }

    /** Creates one job for each line, which the shell runs; the number of lines. */
    public synchronized int createJobs(String[] lines) throws GridException {
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
        for (List<String> command : cached) {
            createJob(command);
        }
        cached.clear();
        return count;
    }

    private void checkAccepts(List<String> command) throws GridException {
        if (command.isEmpty() || command.get(0).isEmpty()) {
            throw new IllegalArgumentException("a job needs a command");
        }
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

    /** Lets the jobs run. */
    public synchronized void start() throws GridException {
        if (started || stopped) {
            throw wrongState(stopped ? "was stopped" : "is started already");
        }
        started = true;
        startedAt = System.nanoTime();
        jobs.forEach(this::submit);
        changed();
    }

    private void submit(Job job) {
        grid.scheduler().submit(info.priority(), new JobRunner(this, job));
    }

    /** Kills the running jobs and drops the waiting ones. */
    public void stop() throws IOException, InterruptedException {
        List<JobProcess> running = new ArrayList<>();
        synchronized (this) {
            if (isCompleted()) {
                return;
            }
            stopped = true;
            jobs.forEach(job -> {
                if (job.state == Job.State.WAITING) {
                    move(job, Job.State.STOPPED);
                } else if (job.process != null) {
                    running.add(job.process);
                }
            });
            changed();
        }
        for (JobProcess process : running) {
            process.kill();
        }
        awaitJobs();
    }

    /** Stops the project and deletes its files, at once or when the last of its jobs has ended. */
    void remove() throws IOException, InterruptedException {
        stop();
        synchronized (this) {
            if (jobs.count(Job.State.RUNNING) > 0) {
                removed = true;
                return;
            }
        }
        directory.deleteResults();
    }

    /** Waits for the jobs that were let run; a thread that runs a job does not wait. */
    synchronized void awaitJobs() throws InterruptedException {
        while (started && jobs.ended() < jobs.size() && !Scheduler.isJobThread()) {
            wait();
        }
    }

    /** Waits for all jobs; an exception unless every one succeeded. */
    public synchronized void awaitCompletion() throws GridException, InterruptedException {
        if (!stopped && !(started && allCreated)) {
            throw wrongState(started ? "is not marked as having all its jobs" : "is not started");
        }
        if (Scheduler.isJobThread()) {
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
    public synchronized void sendToJob(long number, String text) throws GridException {
        Job job = jobs.get(number);
        if (job.state.ended()) {
            throw new GridException(
                    Status.WRONG_STATE, "job " + number + " of " + this + " has ended");
        }
        job.input.add(Arguments.required(text, "the parameter"));
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
    synchronized Map<String, String> environment(Job job) {
        Map<String, String> variables = info.environment();
        variables.put("VANTIRO_JOB", String.valueOf(job.number));
        variables.put("VANTIRO_JOBS", String.valueOf(jobs.size()));
        variables.put("TMPDIR", grid.settings().tempDir.toString());
        return variables;
    }

    /** Claims a waiting job for the calling thread; false when it is not to run any more. */
    synchronized boolean begin(Job job) {
        if (job.state != Job.State.WAITING) {
            return false;
        }
        move(job, Job.State.RUNNING);
        changed();
        return true;
    }

    /** Makes known what is to be killed when the project is stopped. */
    void attach(Job job, JobProcess process) throws IOException, InterruptedException {
        synchronized (this) {
            job.process = process;
            if (!stopped) {
                return;
            }
        }
        process.kill();
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
        synchronized (this) {
            job.process = null;
            move(job,
                    failure == null   ? Job.State.COMPLETED
                            : stopped ? Job.State.STOPPED
                                      : Job.State.FAILED);
            if (job.state == Job.State.FAILED) {
                job.failure = "job " + job.number + " of " + this + " failed: " + job.commandText()
                        + ": " + failure;
                grid.errors().record(new GridException(Status.JOB_FAILED, job.failure));
            }
            changed();
            if (!removed || jobs.count(Job.State.RUNNING) > 0) {
                return;
            }
        }
        try {
            directory.deleteResults();
        } catch (IOException e) {
            report("cannot remove its files", e);
        }
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
        GridException failure = GridException.of(e);
        grid.errors().record(new GridException(
                failure.status(), this + ": " + what + ": " + failure.getMessage()));
    }

    private GridException wrongState(String what) {
        return new GridException(Status.WRONG_STATE, this + " " + what);
    }

    @Override
    public String toString() {
        return "project " + handle + " (" + info.name() + ")";
    }
}
