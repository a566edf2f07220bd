package fi.vantiro.localgrid.project;

import fi.vantiro.localgrid.base.GridException;
import fi.vantiro.localgrid.bundle.ProjectBundles;
import fi.vantiro.localgrid.files.Outputs;
import fi.vantiro.localgrid.home.ProjectDirectory;
import fi.vantiro.localgrid.job.JobEngine;
import fi.vantiro.localgrid.job.JobWork;
import fi.vantiro.localgrid.job.LineFeed;
import fi.vantiro.localgrid.process.JobFile;
import fi.vantiro.localgrid.process.Keeper;
import fi.vantiro.localgrid.process.ProjectKeeper;
import fi.vantiro.localgrid.settings.Settings;
import java.io.IOException;
import java.nio.file.Path;
import java.util.Collection;
import java.util.Map;
import java.util.function.IntSupplier;

/** What a project does for its jobs around their processes. */
final class ProjectWork implements JobWork {
    private final ProjectInfo info;
    private final ProjectDirectory directory;
    private final ProjectBundles bundles;
    private final Settings settings;
    private final JobEngine engine;
    private final IntSupplier jobs;
    private final ProjectKeeper keeper;
    private volatile JobHooks hooks;

    ProjectWork(ProjectInfo info, ProjectDirectory directory, ProjectBundles bundles,
            Settings settings, JobEngine engine, JobHooks hooks, IntSupplier jobs) {
        this.info = info;
        this.directory = directory;
        this.bundles = bundles;
        this.settings = settings;
        this.engine = engine;
        keeper = engine.newKeeper();
        this.hooks = hooks;
        this.jobs = jobs;
    }

    void setHooks(JobHooks newHooks) {
        hooks = newHooks;
    }

    @Override
    public void open() throws GridException, IOException {
        keeper.take();
        engine.startThreads();
    }

    @Override
    public void close() {
        keeper.giveBack();
    }

    @Override
    public Keeper keeper() throws GridException, IOException {
        return keeper.get();
    }

    @Override
    public Path directory(int job) {
        return directory.work(job);
    }

    @Override
    public JobFile file(int job) {
        return directory.job(job);
    }

    @Override
    public void prepare(int job, Path work, Map<String, String> environment)
            throws GridException, IOException {
        environment.putAll(info.environment());
        environment.put("VANTIRO_JOB", String.valueOf(job));
        environment.put("VANTIRO_JOBS", String.valueOf(jobs.getAsInt()));
        environment.put("VANTIRO_WORKDIR", work.toString());
        environment.put("VANTIRO_NAME", engine.jobName(directory.number(), job));
        environment.put("TMPDIR", settings.tempDir.toString());
        bundles.place(work);
        hooks.prepare(job, work, environment);
    }

    @Override
    public LineFeed lines() {
        return hooks.lines();
    }

    @Override
    public Collection<String> outputs() {
        return hooks.outputs();
    }

    @Override
    public Path collect(int job, Outputs outputs, boolean succeeded)
            throws GridException, IOException {
        return hooks.ended(job, outputs, succeeded);
    }

    @Override
    public boolean keepsWork() {
        return hooks.keepsWork(settings.keepWork);
    }

    @Override
    public void deleteDirectory(int job) throws IOException {
        directory.deleteWork(job);
    }
}
