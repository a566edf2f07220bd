package fi.vantiro.localgrid.job;

import fi.vantiro.localgrid.base.GridException;
import fi.vantiro.localgrid.home.GridHome;
import fi.vantiro.localgrid.process.JobFile;
import fi.vantiro.localgrid.process.JobRequest;
import fi.vantiro.localgrid.process.KeeperProgram;
import fi.vantiro.localgrid.process.Keepers;
import fi.vantiro.localgrid.process.ProjectKeeper;
import fi.vantiro.localgrid.settings.Settings;
import java.io.IOException;
import java.nio.file.Path;
import java.util.List;
import java.util.Map;
import java.util.concurrent.TimeUnit;

/**
 * Runs the jobs of all projects of one grid. It owns what that takes, the places, the threads, the
 * keeper and the lock that tells others that this program lives, and gives it back with the last
 * project when no more are to come.
 */
public final class JobEngine {
    private final Settings settings;
    private final GridHome home;
    private final Scheduler scheduler;
    private final Keepers keepers;
    private int users;
    private boolean retired;
    private boolean closed;

    public JobEngine(Settings settings, GridHome home) throws GridException, IOException {
        this.settings = settings;
        this.home = home;
        home.own();
        keepers = new Keepers(home::ownerLock, TimeUnit.SECONDS.toMillis(settings.jobCancelWait));
        scheduler =
                new Scheduler(settings.processors, (owner, job) -> new JobRun(job, owner, this));
    }

    /** A project uses it; false when it is closed already. */
    public synchronized boolean retain() {
        users += closed ? 0 : 1;
        return !closed;
    }

    /** A project, all of whose jobs have ended, uses it no more. */
    public synchronized void release() {
        users--;
        closeIfUnused();
    }

    /** No more projects are to use it: it closes with the last one. */
    public synchronized void retire() {
        retired = true;
        closeIfUnused();
    }

    private void closeIfUnused() {
        if (retired && users == 0 && !closed) {
            close();
        }
    }

    /** Makes sure that jobs can run. */
    public void startThreads() {
        scheduler.startThreads();
    }

    /** Lets an owner's jobs from one number to before another wait for their turn. */
    public void submit(JobOwner owner, int priority, int first, int end) {
        scheduler.submit(owner, priority, first, end);
    }

    /** Forgets what an owner has waiting. */
    public void drop(JobOwner owner) {
        scheduler.drop(owner);
    }

    void resume(JobRun run) {
        scheduler.resume(run);
    }

    void giveBack() {
        scheduler.release();
    }

    Settings settings() {
        return settings;
    }

    /** A name for a job of a project that no other job has, in any program of the grid home. */
    public String jobName(int project, int job) throws GridException, IOException {
        return "vantiro-" + home.ownerLock().getFileName() + "-" + project + "-" + job;
    }

    boolean hasLauncher() {
        return !settings.jobLauncher.isEmpty();
    }

    /** What a keeper is told about a job. */
    JobRequest request(JobFile file, Path directory, Map<String, String> environment,
            List<String> command) throws GridException, IOException {
        JobRequest request = new JobRequest(
                directory, TimeUnit.SECONDS.toMillis(settings.jobTimeout), environment, command);
        return hasLauncher() ? request.launchedBy(settings.jobLauncher, settings.jobCancel,
                       TimeUnit.SECONDS.toMillis(settings.jobCancelWait), file,
                       KeeperProgram.sharedIn(settings.home), home.ownerLock())
                             : request;
    }

    /** The keeper of a project's jobs. */
    public ProjectKeeper newKeeper() {
        return new ProjectKeeper(keepers);
    }

    private void close() {
        closed = true;
        scheduler.close();
        keepers.close();
        home.disown();
    }
}
