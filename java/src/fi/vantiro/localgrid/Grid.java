package fi.vantiro.localgrid;

import fi.vantiro.localgrid.base.Arguments;
import fi.vantiro.localgrid.base.Changes;
import fi.vantiro.localgrid.base.GridException;
import fi.vantiro.localgrid.base.GridThreads;
import fi.vantiro.localgrid.base.HandleTable;
import fi.vantiro.localgrid.base.LastError;
import fi.vantiro.localgrid.base.Log;
import fi.vantiro.localgrid.base.Status;
import fi.vantiro.localgrid.bundle.BundleStore;
import fi.vantiro.localgrid.home.GridHome;
import fi.vantiro.localgrid.job.Scheduler;
import fi.vantiro.localgrid.peach.PeachRun;
import fi.vantiro.localgrid.process.KeeperProgram;
import fi.vantiro.localgrid.process.Keepers;
import fi.vantiro.localgrid.project.Project;
import fi.vantiro.localgrid.project.Session;
import fi.vantiro.localgrid.settings.Plugins;
import fi.vantiro.localgrid.settings.Settings;
import fi.vantiro.user.VantiroManagerPlugin;
import java.io.IOException;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.List;
import java.util.Map;
import java.util.concurrent.TimeUnit;
import java.util.function.IntConsumer;
import java.util.stream.Collectors;

/** The local grid: it runs the jobs of all projects on the processors of this machine. */
public final class Grid {
    private final Settings settings;
    private final LastError errors;
    private final GridHome home;
    private final BundleStore bundles;
    private final Plugins plugins;
    private final Scheduler scheduler;
    private final Changes changes = new Changes();
    /** One for the whole virtual machine: a new initialiser does not lose what runs. */
    private static final HandleTable HANDLES = new HandleTable();
    private final Keepers keepers;

    public Grid(Settings settings, LastError errors) {
        this.settings = settings;
        this.errors = errors;
        home = new GridHome(settings.home);
        bundles = home.bundles();
        plugins = new Plugins(settings.plugins);
        scheduler = new Scheduler(settings.processors);
        keepers = new Keepers(this::ownerLock, TimeUnit.SECONDS.toMillis(settings.jobCancelWait));
        Log.setLevel(settings.logLevel);
    }

    /** Opens a session; its handle. */
    public int open() throws GridException, IOException {
        home.check();
        int handle = HANDLES.next();
        HANDLES.put(handle, new Session(handle));
        return handle;
    }

    /** Ends a session; its projects live on. */
    public void close(int session) throws GridException {
        session(session).close();
    }

    /** Fails unless the session is open and the grid home can be written. */
    public void checkReady(int session) throws GridException, IOException {
        session(session).checkOpen();
        home.check();
    }

    /**
     * Removes left-over working directories, with results also those of ended projects; how many.
     */
    public int cleanup(int session, boolean results) throws GridException, IOException {
        session(session).checkOpen();
        return home.cleanup(results);
    }

    private Session session(int handle) {
        return HANDLES.get(handle, Session.class, "session");
    }

    /** Creates a project in a session. */
    public Project createProject(int session, int priority, String name, Map<String, String> params)
            throws GridException, IOException {
        Session owner = session(session);
        owner.checkOpen();
        Project project = newProject(priority, name);
        project.info().putParams(params);
        owner.projects().add(project);
        return project;
    }

    private Project newProject(int priority, String name) throws GridException, IOException {
        Arguments.required(name, "the project's name");
        int handle = HANDLES.next();
        Project project = new Project(handle, this, home.newProject(), priority, name);
        HANDLES.put(handle, project);
        return project;
    }

    public Project project(int handle) {
        return HANDLES.get(handle, Project.class, "project");
    }

    /** Stops a project, deletes its files and forgets it. */
    public void removeProject(int handle) throws GridException, IOException, InterruptedException {
        Project project = project(handle);
        project.backgroundWait().stopIfWaiting();
        project.remove();
        HANDLES.all(Session.class).forEach(session -> session.projects().remove(project));
        // Last, so that a removal that failed can be repeated.
        HANDLES.remove(handle);
    }

    /** Starts the description of a parallel-each run. */
    public PeachRun newPeachRun() throws GridException, IOException {
        Project project = newProject(0, "peach");
        int handle = HANDLES.next();
        PeachRun run = new PeachRun(handle, this, project);
        HANDLES.put(handle, run);
        return run;
    }

    public PeachRun peachRun(int handle) {
        return HANDLES.get(handle, PeachRun.class, "peach");
    }

    public void forget(PeachRun run, boolean withProject)
            throws GridException, IOException, InterruptedException {
        HANDLES.remove(run.handle());
        if (withProject && HANDLES.find(run.projectHandle(), Project.class) != null) {
            removeProject(run.projectHandle());
        }
    }

    /** Makes a parallel-each run, has it described by its handle, and runs it; the handle. */
    public int peach(IntConsumer describe) throws GridException, IOException, InterruptedException {
        PeachRun run = newPeachRun();
        boolean succeeded = false;
        try {
            describe.accept(run.handle());
            run.execute();
            succeeded = true;
        } finally {
            if (!succeeded) {
                // The caller never learns the handle, so nothing may stay that needs it.
                run.discard();
            }
        }
        return run.handle();
    }

    /** The figures of a session's projects, or of one project, for people. */
    public String statistics(int handle) {
        Session session = HANDLES.find(handle, Session.class);
        List<Project> projects = new ArrayList<>();
        if (session == null) {
            projects.add(HANDLES.get(handle, Project.class, "session or project"));
        } else {
            projects.addAll(session.projects());
        }
        String title = session == null ? ""
                                       : "session " + handle + ": " + projects.size()
                        + " projects, " + scheduler.places() + " processors\n";
        return title + projects.stream().map(Grid::statistics).collect(Collectors.joining("\n"));
    }

    private static String statistics(Project project) {
        return project.description() + ": "
                + project.jobs()
                          .statistics()
                          .entrySet()
                          .stream()
                          .map(figure -> figure.getKey() + " " + figure.getValue())
                          .collect(Collectors.joining(", "));
    }

    public boolean bundleExists(String name) throws GridException, IOException {
        return bundles.exists(info -> info.hasName(name));
    }

    public boolean bundleExists(String prefix, String name) throws GridException, IOException {
        return bundles.exists(info -> info.prefix.equals(prefix) && info.name.equals(name));
    }

    public boolean bundleVersionExists(String name, String version)
            throws GridException, IOException {
        Arguments.required(name, "the bundle's name");
        return bundles.exists(info -> info.hasName(name) && info.version.equals(version));
    }

    /** Whether a job or project changes its state within that time. */
    public boolean awaitChange(long millis) throws InterruptedException {
        return changes.await(millis);
    }

    public void setLogLevel(String name) throws GridException {
        Log.setLevel(Log.level(name));
    }

    public String userLogin() {
        return settings.login;
    }

    public Path tempDir() {
        return settings.tempDir;
    }

    /** The number of processors that serve a project. */
    public int processors(int project) {
        project(project);
        return scheduler.places();
    }

    public VantiroManagerPlugin plugin(String name) {
        return plugins.get(name);
    }

    public Class<? extends VantiroManagerPlugin> pluginClass(String name) {
        return plugins.type(name);
    }

    public String pluginValue(String name, String key) {
        return plugins.value(name, key);
    }

    /**
     * Stops the jobs or waits for them, then forgets every session, project and parallel-each run.
     */
    public void unload(boolean stopJobs, boolean removeFiles)
            throws GridException, IOException, InterruptedException {
        if (!stopJobs && GridThreads.isCurrent()) {
            throw new GridException(
                    Status.WRONG_STATE, "a thread of the grid cannot wait for its jobs");
        }
        HANDLES.closeForNew();
        try {
            List<Project> projects = HANDLES.all(Project.class);
            for (Project project : projects) {
                if (!stopJobs) {
                    project.jobs().awaitEnd();
                }
                project.jobs().requestStop();
            }
            for (Project project : projects) {
                project.jobs().awaitEnd();
                project.backgroundWait().stopIfWaiting();
            }
            HANDLES.clear();
            if (removeFiles) {
                removeFiles(projects);
            }
        } finally {
            HANDLES.openForNew();
        }
    }

    /** One that cannot be removed does not keep the others. */
    private static void removeFiles(List<Project> projects)
            throws IOException, InterruptedException {
        IOException failure = null;
        for (Project project : projects) {
            try {
                project.remove();
            } catch (IOException e) {
                failure = e;
            }
        }
        if (failure != null) {
            throw failure;
        }
    }

    public Keepers keepers() {
        return keepers;
    }

    /** The keeper where a launcher finds it: beside the jobs, on whatever machine that is. */
    public Path farKeeper() throws GridException, IOException {
        return KeeperProgram.sharedIn(settings.home);
    }

    public Path ownerLock() throws GridException, IOException {
        return home.ownerLock();
    }

    public Settings settings() {
        return settings;
    }

    public LastError errors() {
        return errors;
    }

    public GridHome home() {
        return home;
    }

    public BundleStore bundles() {
        return bundles;
    }

    public Scheduler scheduler() {
        return scheduler;
    }

    public Changes changes() {
        return changes;
    }
}
