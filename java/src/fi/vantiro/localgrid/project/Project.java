package fi.vantiro.localgrid.project;

import fi.vantiro.localgrid.Grid;
import fi.vantiro.localgrid.base.Arguments;
import fi.vantiro.localgrid.base.Changes;
import fi.vantiro.localgrid.base.GridException;
import fi.vantiro.localgrid.base.LastError;
import fi.vantiro.localgrid.base.Status;
import fi.vantiro.localgrid.bundle.ProjectBundles;
import fi.vantiro.localgrid.home.ProjectDirectory;
import fi.vantiro.localgrid.job.Job;
import fi.vantiro.localgrid.job.JobHooks;
import fi.vantiro.localgrid.job.Scheduler;
import fi.vantiro.localgrid.process.JobFile;
import fi.vantiro.localgrid.process.JobRequest;
import fi.vantiro.localgrid.process.ProjectKeeper;
import fi.vantiro.localgrid.settings.Settings;
import java.io.IOException;
import java.nio.file.Path;
import java.util.List;
import java.util.Locale;
import java.util.Map;
import java.util.concurrent.TimeUnit;

/** A number of jobs with what they share: a name, parameters, bundles, and a place for results. */
public final class Project {
    private final int handle;
    private final Grid grid;
    private final ProjectDirectory directory;
    private final ProjectInfo info;
    private final Results results;
    private final ProjectBundles bundles;
    private final BackgroundWait backgroundWait = new BackgroundWait(this);

    private final ProjectJobs jobs = new ProjectJobs(this);
    private final ProjectKeeper keeper;
    private final LineFollowers followers = new LineFollowers();
    private volatile JobHooks hooks = JobHooks.NONE;
    private volatile boolean removed;

    public Project(int handle, Grid grid, ProjectDirectory directory, int priority, String name) {
        this.handle = handle;
        this.grid = grid;
        this.directory = directory;
        info = new ProjectInfo(name, priority, directory.number());
        results = new Results(directory, grid.settings());
        bundles = new ProjectBundles(grid.bundles());
        keeper = new ProjectKeeper(grid.keepers());
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

    public ProjectJobs jobs() {
        return jobs;
    }

    public BackgroundWait backgroundWait() {
        return backgroundWait;
    }

    public ProjectDirectory directory() {
        return directory;
    }

    public void setHooks(JobHooks hooks) {
        this.hooks = hooks;
    }

    public JobHooks hooks() {
        return hooks;
    }

    public Settings settings() {
        return grid.settings();
    }

    /** Changes the project's number, as long as no job has seen it. */
    public void setId(int id) throws GridException, IOException, InterruptedException {
        jobs.beforeStart(() -> {
            grid.home().renumber(directory, id);
            info.setId(id);
        });
    }

    /** Stops the project and deletes its files, at once or when the last of its jobs has ended. */
    public void remove() throws IOException, InterruptedException {
        jobs.stop();
        removed = true;
        if (jobs.areEnded()) {
            directory.deleteResults();
        }
    }

    /** Takes note of the end of a job; a failure of null is success. */
    public void end(Job job, String failure) {
        jobs.end(job, failure);
        if (removed && jobs.areEnded()) {
            try {
                directory.deleteResults();
            } catch (IOException e) {
                report("cannot remove its files", e);
            }
        }
    }

    /** One line for people. */
    public String description() {
        return info + ", " + jobs.size() + " jobs, " + jobs.state().name().toLowerCase(Locale.ROOT)
                + ")";
    }

    /** The variables that each job finds in its environment. */
    public Map<String, String> environment(Job job) throws GridException, IOException {
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

    /** What the keeper is told about a job. */
    public JobRequest request(JobFile file, Path work, Map<String, String> environment,
            List<String> command) throws GridException, IOException {
        Settings settings = settings();
        JobRequest request = new JobRequest(
                work, TimeUnit.SECONDS.toMillis(settings.jobTimeout), environment, command);
        return settings.jobLauncher.isEmpty()
                ? request
                : request.launchedBy(settings.jobLauncher, settings.jobCancel,
                        TimeUnit.SECONDS.toMillis(settings.jobCancelWait), file, grid.farKeeper(),
                        grid.ownerLock());
    }

    public ProjectKeeper keeper() {
        return keeper;
    }

    public Scheduler scheduler() {
        return grid.scheduler();
    }

    LastError errors() {
        return grid.errors();
    }

    Changes changes() {
        return grid.changes();
    }

    public LineFollowers followers() {
        return followers;
    }

    /** Downloads the results, with partial also those of a project that goes on; how many. */
    public int download(boolean partial) throws GridException, IOException {
        if (!partial && !jobs.isCompleted()) {
            throw new GridException(Status.WRONG_STATE, this + " is not completed");
        }
        return results.download();
    }

    /** Remembers a failure that no caller waits for. */
    void report(String what, IOException e) {
        report(what, GridException.of(e));
    }

    void report(String what, GridException failure) {
        grid.errors().record(new GridException(
                failure.status(), this + ": " + what + ": " + failure.getMessage()));
    }

    @Override
    public String toString() {
        return "project " + info.id() + " (" + Arguments.shortened(info.name()) + ")";
    }
}
