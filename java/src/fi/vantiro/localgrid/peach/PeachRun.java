package fi.vantiro.localgrid.peach;

import fi.vantiro.localgrid.base.GridException;
import fi.vantiro.localgrid.base.LastError;
import fi.vantiro.localgrid.base.Log;
import fi.vantiro.localgrid.base.Status;
import fi.vantiro.localgrid.files.Archives;
import fi.vantiro.localgrid.files.AtomicFile;
import fi.vantiro.localgrid.files.Failures;
import fi.vantiro.localgrid.files.Outputs;
import fi.vantiro.localgrid.home.StateDirectory;
import fi.vantiro.localgrid.job.Job;
import fi.vantiro.localgrid.job.LineFeed;
import fi.vantiro.localgrid.job.WorkDirectory;
import fi.vantiro.localgrid.project.JobHooks;
import fi.vantiro.localgrid.project.Project;
import java.io.IOException;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.Arrays;
import java.util.Collection;
import java.util.List;
import java.util.Map;
import java.util.function.Consumer;
import java.util.logging.Level;
import java.util.logging.Logger;

/** One parallel-each run: a project whose jobs all run the same executable. */
public final class PeachRun implements JobHooks {
    private static final Logger LOG = Logger.getLogger(Log.NAME);

    private static final int POLL_MS = 20;
    private static final int IDLE_MS = 200;

    private enum Phase { DESCRIBED, EXECUTING, ENDED }

    private final int handle;
    private final Project project;
    private final boolean keepWork;
    private final Registry registry;
    private final PeachDescription description = new PeachDescription();
    private final PeachFiles files = new PeachFiles();
    private final LastError errors = new LastError();
    private volatile Consumer<String> handler;
    private final LineFeed lines = new LineFeed(this::deliver);
    /** Who executes the run, and calls its receiver. */
    private Thread executing;

    private Phase phase = Phase.DESCRIBED;
    private boolean failed;
    private volatile boolean sourcesChanged;
    private StateDirectory state;
    private PeachInputs inputs;
    private int jobsEnded;
    /** Whether the outputs are there and the file that is to hold them is not. */
    private volatile boolean owesResultFile;

    /** Where the run is known by its handle. */
    @FunctionalInterface
    public interface Registry {
        /** Forgets the run, and removes its project or not. */
        void forget(PeachRun run, boolean withProject)
                throws GridException, IOException, InterruptedException;
    }

    public PeachRun(int handle, Project project, boolean keepWork, Registry registry) {
        this.handle = handle;
        this.project = project;
        this.keepWork = keepWork;
        this.registry = registry;
        project.setHooks(this);
    }

    /** Changes the description, which is fixed once the run executes. */
    public synchronized void configure(Consumer<PeachDescription> change) {
        if (phase != Phase.DESCRIBED) {
            throw new IllegalStateException("peach run " + handle + " was executed already");
        }
        change.accept(description);
    }

    /** Sends each line that a job writes to a receiver, as "job:line". */
    public void setHandler(Consumer<String> receiver) {
        handler = receiver;
    }

    public int handle() {
        return handle;
    }

    public int projectHandle() {
        return project.handle();
    }

    public int projectId() {
        return project.info().id();
    }

    public void setProjectId(int id) throws GridException, IOException, InterruptedException {
        project.setId(id);
    }

    /** The failures of this run. */
    public LastError errors() {
        return errors;
    }

    /** Whether the sources differ from those of the last run with the same state directory. */
    public synchronized boolean sourcesChanged() throws GridException, IOException {
        return phase == Phase.DESCRIBED ? sources().changed() : sourcesChanged;
    }

    private PeachSources sources() throws GridException, IOException {
        return new PeachSources(stateDir(), description.sources, description.sourceExtras);
    }

    private Path stateDir() {
        return description.stateDir == null ? project.state() : description.stateDir;
    }

    /** Runs all jobs to their end; an exception when some failed and that is not allowed. */
    public void execute() throws GridException, IOException, InterruptedException {
        synchronized (this) {
            if (phase != Phase.DESCRIBED) {
                throw new GridException(
                        Status.WRONG_STATE, "peach run " + handle + " was executed already");
            }
            phase = Phase.EXECUTING;
            executing = Thread.currentThread();
        }
        boolean succeeded = false;
        try {
            prepare();
            project.jobs().start();
            awaitJobs();
            if (description.resultFile != null) {
                owesResultFile = true;
                project.results().merge(description.resultFile);
                owesResultFile = false;
            }
            succeeded = true;
        } finally {
            finish(succeeded);
        }
    }

    private void prepare() throws GridException, IOException {
        inputs = new PeachInputs(description);
        inputs.check();
        if (description.resultFile != null) {
            AtomicFile.check(description.resultFile);
        }
        chooseBundles();
        if (description.executable.isEmpty()) {
            throw new GridException(Status.WRONG_STATE, "no executable is set");
        }
        project.info().describe(description.name, description.description, description.priority);
        project.info().putParams(description.projectParams);
        int jobs = description.jobCount();
        for (int left = jobs; left > 0; left--) {
            project.jobs().create(Job.shellLine(description.executable));
        }
        project.jobs().markAllCreated();
        project.checkCanStart();
        PeachSources sources = sources();
        state = new StateDirectory(stateDir());
        state.open(jobs, plainOutputs());
        sourcesChanged = sources.changed();
        if (sourcesChanged) {
            sources.save(state);
        }
        inputs.prepare(state);
        // From here on the run can start: only now what an earlier one left goes.
        state.removeOutputs();
    }

    /** The outputs whose names are known before the jobs run. */
    private List<String> plainOutputs() {
        List<String> names = new ArrayList<>(description.outputs);
        names.removeIf(WorkDirectory::isPattern);
        names.addAll(Arrays.asList(WorkDirectory.STDOUT, WorkDirectory.STDERR));
        return names;
    }

    private void chooseBundles() throws GridException, IOException {
        if (!description.exeBundle.isEmpty() && description.exe.isEmpty()) {
            project.bundles().use(description.exeBundle);
            String program = project.bundles().executable();
            if (description.executable.isEmpty() && !program.isEmpty()) {
                description.executable = "./" + program;
            }
        }
        for (String name : description.exeImports) {
            project.bundles().addImport(name);
        }
    }

    private void awaitJobs() throws GridException, InterruptedException {
        say("started");
        try {
            followJobs();
            project.jobs().awaitCompletion();
            say("completed");
        } catch (GridException e) {
            say(e.getMessage());
            if (!description.allowPartial) {
                throw e;
            }
            errors.record(e);
        }
    }

    /** Hands lines on until the jobs have ended and there are no more of them. */
    private void followJobs() throws InterruptedException {
        while (!project.jobs().awaitCompletion(lines.isEmpty() ? IDLE_MS : POLL_MS)) {
            while (lines.deliver()) {
                continue;
            }
        }
        while (!lines.isEmpty()) {
            lines.deliver();
        }
    }

    private void finish(boolean succeeded) throws IOException, InterruptedException {
        try {
            project.jobs().stop();
        } finally {
            synchronized (this) {
                failed = !succeeded;
                phase = Phase.ENDED;
                files.release();
                notifyAll();
                if (state != null) {
                    state.close();
                    inputs.close();
                }
            }
        }
    }

    private void say(String text) {
        if (description.messages) {
            System.err.println("vantiro: " + description.name + ": " + text);
        }
    }

    @Override
    public void prepare(int job, Path directory, Map<String, String> environment)
            throws IOException {
        inputs.place(job, directory, environment);
    }

    @Override
    public boolean keepsWork(boolean setting) {
        return description.cleanup == null ? setting : !description.cleanup;
    }

    @Override
    public Collection<String> outputs() {
        return description.outputs;
    }

    @Override
    public LineFeed lines() {
        return handler == null ? null : lines;
    }

    private void deliver(int job, String text, boolean last) {
        String told = job + (last ? ":" : "+") + text;
        try {
            handler.accept(told);
        } catch (RuntimeException | Error e) {
            // The receiver is the caller's code; its troubles must not become the run's.
            LOG.log(Level.WARNING, "the receiver of intermediate results failed", e);
        }
    }

    @Override
    public Path ended(int job, Outputs outputs, boolean succeeded)
            throws GridException, IOException {
        state.take(job, outputs, keepsWork(keepWork));
        List<String> names = outputs.names();
        project.results().add(job, archive -> pack(archive, job, names));
        List<Path> kept = new ArrayList<>();
        for (String name : names) {
            if (isHandedOut(name)) {
                kept.add(state.outputs(job).resolve(name));
            }
        }
        synchronized (this) {
            jobsEnded++;
            say("job " + job + (succeeded ? " completed" : " failed") + ", " + jobsEnded + " of "
                    + project.jobs().size() + " ended");
            if (succeeded) {
                files.hold(job, kept);
                if (description.stream) {
                    files.release();
                }
            }
        }
        return state.outputs(job);
    }

    private void pack(Path archive, int job, List<String> names) throws GridException, IOException {
        state.checkCurrent();
        Outputs outputs = new Outputs(state.outputs(job), names, new Failures());
        Archives.pack(archive, outputs);
        if (!outputs.lost().isEmpty()) {
            LOG.warning("not in " + archive + ": " + outputs.lost());
        }
    }

    private boolean isHandedOut(String name) {
        boolean isStream = name.equals(WorkDirectory.STDOUT) || name.equals(WorkDirectory.STDERR);
        return !isStream || description.outputs.isEmpty() || description.outputs.contains(name);
    }

    /** The next result file, null when there is none (yet). */
    public synchronized Path nextFile() throws GridException, IOException, InterruptedException {
        boolean over = phase == Phase.ENDED;
        Path file = over && failed ? null : files.next();
        if (file != null) {
            state.checkCurrent();
        }
        if (file == null && over && description.close) {
            done();
        }
        return file;
    }

    /** Notes that the caller is through with a result file, so that cleaning up removes it. */
    public void postProcessed(int number) {
        files.markProcessed(number);
    }

    /** Ends the run, stopping what still runs, and forgets it. */
    public void done() throws GridException, IOException, InterruptedException {
        end(description.remove);
    }

    /** Ends the run and removes its project, whatever its settings say. */
    public void discard() throws GridException, IOException, InterruptedException {
        end(true);
    }

    private void end(boolean withProject) throws GridException, IOException, InterruptedException {
        boolean unused;
        synchronized (this) {
            if (phase == Phase.EXECUTING && executing == Thread.currentThread()) {
                throw new GridException(Status.WRONG_STATE,
                        "peach run " + handle + " cannot be ended by its own receiver");
            }
            unused = phase == Phase.DESCRIBED;
        }
        project.jobs().stop();
        synchronized (this) {
            while (phase == Phase.EXECUTING) {
                wait();
            }
            if (Boolean.TRUE.equals(description.cleanup) && state != null && state.isCurrent()) {
                files.deleteProcessed();
            }
        }
        if (owesResultFile) {
            LOG.warning("the outputs of " + project + " stay in " + state.root()
                    + ", since its result file " + description.resultFile + " was not written");
        }
        registry.forget(this, (withProject || unused) && !owesResultFile);
    }
}
