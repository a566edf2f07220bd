package fi.vantiro.localgrid.job;

import fi.vantiro.localgrid.base.GridException;
import fi.vantiro.localgrid.base.Rights;
import fi.vantiro.localgrid.base.Status;
import fi.vantiro.localgrid.home.GridHome;
import fi.vantiro.localgrid.process.JobFile;
import fi.vantiro.localgrid.process.Keeper;
import fi.vantiro.localgrid.settings.Settings;
import java.io.IOException;
import java.nio.file.Path;
import java.util.List;
import java.util.Map;

/**
 * Runs the jobs of all projects of one grid. It owns what that takes, the places, the threads, the
 * keeper and the lock that tells others that this program lives, and gives it back with the last
 * project when no more are to come.
 */
public final class JobEngine {
    private final Settings settings;
    private final GridHome home;
    private final Path ownerLock;
    private final Scheduler scheduler;
    private Keeper keeper;
    private int users;
    private boolean retired;
    private boolean closed;

    public JobEngine(Settings settings, GridHome home) throws GridException, IOException {
        this.settings = settings;
        this.home = home;
        ownerLock = home.own();
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
    public void start() throws GridException, IOException {
        keeper();
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
    public String jobName(int project, int job) {
        return "vantiro-" + ownerLock.getFileName() + "-" + project + "-" + job;
    }

    void writeJobFile(JobFile file, Path directory, Map<String, String> environment,
            List<String> command) throws GridException, IOException {
        // Where a launcher finds it: beside the jobs, on whatever machine that is.
        Path program =
                settings.jobLauncher.isEmpty() ? Keeper.program() : Keeper.programIn(settings.home);
        file.write(directory, settings, ownerLock, program, environment, command);
    }

    /** The keeper of the jobs, started when it is first needed or when it was ended. */
    public synchronized Keeper keeper() throws GridException, IOException {
        if (closed) {
            throw new GridException(Status.WRONG_STATE, "the grid was closed");
        }
        if (keeper == null || keeper.isGone()) {
            if (Rights.areBorrowed()) {
                throw new GridException(Status.WRONG_STATE,
                        "a set-user-id or set-group-id program runs no jobs: they would have its "
                                + "rights, in its caller's environment; give the rights up first");
            }
            keeper = Keeper.start(ownerLock, settings.jobCancelWait);
        }
        return keeper;
    }

    private void close() {
        closed = true;
        scheduler.close();
        if (keeper != null) {
            keeper.close();
        }
        home.disown();
    }
}
