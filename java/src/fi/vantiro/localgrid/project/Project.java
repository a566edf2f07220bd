package fi.vantiro.localgrid.project;

import fi.vantiro.localgrid.base.Changes;
import fi.vantiro.localgrid.base.GridException;
import fi.vantiro.localgrid.base.LastError;
import fi.vantiro.localgrid.base.Status;
import fi.vantiro.localgrid.bundle.BundleStore;
import fi.vantiro.localgrid.bundle.ProjectBundles;
import fi.vantiro.localgrid.files.Outputs;
import fi.vantiro.localgrid.home.GridHome;
import fi.vantiro.localgrid.home.ProjectDirectory;
import fi.vantiro.localgrid.job.JobEngine;
import fi.vantiro.localgrid.settings.Settings;
import java.io.IOException;
import java.nio.file.Path;
import java.util.Locale;

/** A number of jobs with what they share: a name, parameters, bundles, and a place for results. */
public final class Project implements ProjectJobs.Listener {
    private final int handle;
    private final GridHome home;
    private final ProjectDirectory directory;
    private final JobEngine engine;
    private final LastError errors;
    private final Changes changes;
    private final ProjectInfo info;
    private final Results results;
    private final ProjectBundles bundles;
    private final ProjectWork work;
    private final ProjectJobs jobs;
    private final BackgroundWait backgroundWait;

    public Project(int handle, String name, int priority, GridHome home, Settings settings,
            BundleStore store, JobEngine engine, LastError errors, Changes changes)
            throws GridException, IOException {
        this.handle = handle;
        this.home = home;
        this.engine = engine;
        this.errors = errors;
        this.changes = changes;
        directory = home.newProject();
        info = new ProjectInfo(name, priority, directory.number());
        results = new Results(directory, settings);
        bundles = new ProjectBundles(store);
        work = new ProjectWork(
                info, directory, bundles, settings, engine, this::archive, () -> jobs().size());
        jobs = new ProjectJobs(info, engine, work, this);
        backgroundWait = new BackgroundWait(this);
    }

    private Path archive(int job, Outputs outputs, boolean succeeded)
            throws GridException, IOException {
        results.add(job, outputs);
        return null;
    }

    /** Has something else done with what the jobs leave, and more before they start. */
    public void setHooks(JobHooks hooks) {
        work.setHooks(hooks);
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

    /** Where a parallel-each run without a state directory of its own keeps its files. */
    public Path state() {
        return directory.state();
    }

    /** Fails when jobs could not be started now. */
    public void checkCanStart() throws GridException, IOException {
        work.open();
    }

    /** Changes the project's number, as long as no job has seen it. */
    public void setId(int id) throws GridException, IOException, InterruptedException {
        jobs.beforeStart(() -> {
            home.renumber(directory, id);
            info.setId(id);
        });
    }

    /** Stops the project and deletes its files. */
    public void remove() throws IOException, InterruptedException {
        jobs.stop();
        directory.delete();
    }

    /** Nobody knows the project any more. */
    public void forget() {
        engine.release();
    }

    /** One line for people. */
    public String description() {
        return info.description() + ", " + jobs.size() + " jobs, "
                + jobs.state().name().toLowerCase(Locale.ROOT) + ")";
    }

    /** Downloads the results, with partial also those of a project that goes on; how many. */
    public int download(boolean partial) throws GridException, IOException {
        if (!partial && !jobs.isCompleted()) {
            throw new GridException(Status.WRONG_STATE, this + " is not completed");
        }
        return results.download();
    }

    @Override
    public void changed() {
        changes.signal();
    }

    @Override
    public void failed(GridException failure) {
        errors.record(failure);
    }

    @Override
    public void completed() {
        try {
            directory.markEnded();
        } catch (IOException e) {
            report("cannot mark it as ended", GridException.of(e));
        }
    }

    /** Remembers a failure that no caller waits for. */
    void report(String what, GridException failure) {
        errors.record(new GridException(
                failure.status(), this + ": " + what + ": " + failure.getMessage()));
    }

    @Override
    public String toString() {
        return info.toString();
    }
}
