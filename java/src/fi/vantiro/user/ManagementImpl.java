package fi.vantiro.user;

import fi.vantiro.localgrid.Grid;
import fi.vantiro.localgrid.base.Arguments;
import fi.vantiro.localgrid.base.GridException;
import fi.vantiro.localgrid.base.LastError;
import fi.vantiro.localgrid.base.Status;
import fi.vantiro.localgrid.bundle.BundleArchive;
import fi.vantiro.localgrid.bundle.BundleInfo;
import fi.vantiro.localgrid.project.Project;
import fi.vantiro.localgrid.project.Results;
import fi.vantiro.localgrid.settings.Settings;
import java.util.ArrayList;
import java.util.Arrays;
import java.util.HashMap;
import java.util.List;
import java.util.Map;
import java.util.concurrent.atomic.AtomicReference;
import java.util.function.Supplier;

/**
 * The operations of the grid by the handles of sessions, projects and parallel-each runs. A
 * negative result is a failure whose text getLastErrorMessage holds; an unknown handle is an
 * exception.
 */
public final class ManagementImpl {
    /** An initialiser makes a new object and lets nobody end the old one. */
    private static final AtomicReference<Grid> CURRENT = new AtomicReference<>();

    private final LastError errors = new LastError();
    private Grid grid;

    /** A management object with default settings, until an initialiser is called. */
    public ManagementImpl() {}

    private synchronized Grid grid() throws GridException {
        if (grid == null) {
            use(Settings.defaults());
        }
        return grid;
    }

    private synchronized void use(Settings settings) {
        grid = new Grid(settings, errors);
        Grid before = CURRENT.getAndSet(grid);
        if (before != null) {
            before.retire();
        }
    }

    private Project project(int handle) throws GridException {
        return grid().project(handle);
    }

    // Initialisation and end

    /** Takes the settings of the file that VANTIRO_SETTINGS names, or of vantiro.properties. */
    public int initFile() {
        return initialise(Settings::load);
    }

    /** Takes the settings of a file. */
    public int initFile(String file) {
        return initialise(() -> Settings.load(file, null));
    }

    /** Takes the settings of a file that a password protects. */
    public int initFile(String file, String password) {
        return initialise(() -> Settings.load(file, password));
    }

    /** Takes single settings and those of a further file. */
    public int init(String home, String login, String password, String tempDir, int processors,
            String logLevel, String downloadDir, int jobTimeout, int keepWork, String unzipDir,
            String furtherFile) {
        Map<String, String> values = new HashMap<>();
        values.put(Settings.HOME, home);
        values.put(Settings.LOGIN, login);
        values.put(Settings.TEMP_DIR, tempDir);
        values.put(Settings.PROCESSORS, String.valueOf(processors));
        values.put(Settings.LOG_LEVEL, logLevel);
        values.put(Settings.DOWNLOAD_DIR, downloadDir);
        values.put(Settings.JOB_TIMEOUT, String.valueOf(jobTimeout));
        values.put(Settings.KEEP_WORK, String.valueOf(keepWork));
        values.put(Settings.UNZIP_DIR, unzipDir);
        return initialise(() -> Settings.of(values, furtherFile, password));
    }

    private int initialise(LastError.Query<Settings> settings) {
        return errors.statusOf(() -> use(settings.run()));
    }

    /** Stops the jobs or waits for them, and forgets all handles. */
    public int unload(boolean stopJobs) {
        return unload(stopJobs, false);
    }

    /** The same; also removes the files of all projects from the grid home. */
    public int unload(boolean stopJobs, boolean removeWork) {
        return errors.statusOf(() -> grid().unload(stopJobs, removeWork));
    }

    /** The code of the last failure, 0 when there was none; a value other than 0 resets it. */
    public int getLastError(int value) {
        int code = errors.code();
        if (value != 0) {
            errors.reset();
        }
        return code;
    }

    /** The text of the last failure, null when there was none. */
    public String getLastErrorMessage() {
        return errors.message();
    }

    /** The text of a result code. */
    public String describeStatusCode(int code) {
        return Status.describe(code);
    }

    // Sessions, diagnostics and plug-ins

    /** Opens a session; its handle. */
    public int open() {
        return errors.numberOf(() -> grid().open());
    }

    /** Ends a session; its projects live on. */
    public int close(int session) {
        return errors.statusOf(() -> grid().close(session));
    }

    /** 1 when the session is open and the grid home writable, else 0. */
    public int ready(int session) {
        return errors.statusOf(() -> grid().checkReady(session)) == Status.OK.code() ? 1 : 0;
    }

    /** Removes left-over working directories (0) and also results (1); how many directories. */
    public int cleanup(int session, int value) {
        return errors.numberOf(() -> grid().cleanup(session, value != 0));
    }

    /** Sets the level of the grid's log. */
    public int setLogLevel(String level) {
        return errors.statusOf(
                () -> grid().setLogLevel(Arguments.required(level, "the log level")));
    }

    /** Prints the figures of a session or project. */
    public void printStatistics(int handle) {
        System.out.println(getStatisticsString(handle));
    }

    /** The figures of a session or project. */
    public String getStatisticsString(int handle) {
        return errors.valueOf(() -> grid().statistics(handle));
    }

    /** The user's login name. */
    public String getUserLogin() {
        return errors.valueOf(() -> grid().userLogin());
    }

    /** The directory for temporary files. */
    public String getTempDir() {
        return errors.valueOf(() -> grid().tempDir().toString());
    }

    /** The plug-in of that name, null when the settings have none. */
    public VantiroManagerPlugin getPlugin(String name) {
        return errors.valueOf(() -> grid().plugin(Arguments.required(name, "the plug-in's name")));
    }

    /** The class of the plug-in of that name, null when the settings have none. */
    public Class<?> getPluginClass(String name) {
        return errors.valueOf(
                () -> grid().pluginClass(Arguments.required(name, "the plug-in's name")));
    }

    /** A configuration value of a plug-in, null when it is not set. */
    public String getPluginConf(String name, String key) {
        return errors.valueOf(
                ()
                        -> grid().pluginValue(Arguments.required(name, "the plug-in's name"),
                                Arguments.required(key, "the key")));
    }

    // Bundles

    /** Writes a bundle of files below a base directory; its id. */
    public int createBundle(int project, String name, String version, String prefix,
            String platform, String description, String directory, String base, String executable,
            String vendor, String[] files, String[] imports) {
        return create(project, directory, base, files, null, null,
                ()
                        -> new BundleInfo(name, version, prefix, platform, description, executable,
                                vendor, imports));
    }

    /** Writes a bundle with the signer's name and the digest of each file; its id. */
    public int createSignedBundle(int project, String name, String version, String prefix,
            String platform, String description, String directory, String base, String executable,
            String vendor, String signer, String[] files, String[] imports, String algorithm) {
        return create(project, directory, base, files, Arguments.orEmpty(signer), algorithm,
                ()
                        -> new BundleInfo(name, version, prefix, platform, description, executable,
                                vendor, imports));
    }

    private int create(int project, String directory, String base, String[] files, String signer,
            String algorithm, Supplier<BundleInfo> info) {
        return errors.numberOf(()
                                       -> project(project).bundles().create(info.get(), directory,
                                               base, files, signer, algorithm));
    }

    /** Adds a signer's name and digests to an archive. */
    public int signJar(String archive, String signer) {
        return errors.statusOf(() -> BundleArchive.sign(archive, signer));
    }

    /** Uploads the bundle that the project created last. */
    public int uploadBundle(int project) {
        return errors.statusOf(() -> project(project).bundles().upload());
    }

    /** Uploads a bundle's archive. */
    public int uploadBundle(int project, String archive) {
        return errors.statusOf(() -> project(project).bundles().upload(archive));
    }

    /** Lets all uploaded bundles be used; how many. */
    public int approveUploadedBundles(int project) {
        return errors.numberOf(() -> project(project).bundles().approve());
    }

    /** Whether there is an approved bundle of that name, with its prefix or without. */
    public boolean bundleExists(String name) {
        return errors.valueOf(
                () -> grid().bundleExists(Arguments.required(name, "the bundle's name")));
    }

    /** Whether there is an approved bundle of that prefix and name. */
    public boolean bundleExists(String prefix, String name) {
        return errors.valueOf(() -> grid().bundleExists(Arguments.orEmpty(prefix), name));
    }

    /** Whether there is an approved bundle of that name and version. */
    public boolean bundleVersionExists(String name, String version) {
        return errors.valueOf(() -> grid().bundleVersionExists(name, version));
    }

    /** Gives the files of the newest version of a bundle to the project's jobs. */
    public int useBundle(int project, String name) {
        return errors.statusOf(() -> project(project).bundles().use(name));
    }

    /** The same for a bundle of a prefix. */
    public int useBundle(int project, String prefix, String name) {
        return errors.statusOf(() -> project(project).bundles().use(prefix, name));
    }

    /** The id of the bundle that the project uses, 0 when it uses none. */
    public int getBundleId(int project) {
        return errors.numberOf(() -> project(project).bundles().usedId());
    }

    /** Gives the files of the approved bundle of that id to the project's jobs. */
    public int setBundleId(int project, int id) {
        return errors.statusOf(() -> project(project).bundles().use(id));
    }

    /** The name, with its prefix, of the bundle that the project created last. */
    public String getLastCreatedBundleName(int project) {
        return errors.valueOf(() -> project(project).bundles().lastCreatedName());
    }

    // Projects and jobs

    /** Creates a project; its handle. */
    public int createProject(int session, int priority, String name) {
        return createProject(session, priority, name, new String[0]);
    }

    /** Creates a project with "key=value" parameters; its handle. */
    public int createProject(int session, int priority, String name, String[] params) {
        return errors.numberOf(
                ()
                        -> grid().createProject(session, priority, name, Arguments.items(params))
                                   .handle());
    }

    /** Sets "key=value" parameters. */
    public int setProjectParams(int project, String[] params) {
        return errors.statusOf(() -> project(project).info().putParams(Arguments.items(params)));
    }

    /** Creates one job for each shell command line; how many. */
    public int createProjectJobs(int project, String[] lines) {
        return errors.numberOf(
                () -> project(project).jobs().createAll(Arguments.list(lines, "lines")));
    }

    /** Creates a job that runs a program with its arguments; its number. */
    public int createJob(int project, String[] command) {
        return errors.numberOf(() -> project(project).jobs().create(command(command)));
    }

    /** Keeps a job aside until the cached jobs are flushed; how many are aside. */
    public int createCachedJob(int project, String[] command) {
        return errors.numberOf(() -> project(project).jobs().cache(command(command)));
    }

    private static List<String> command(String[] words) {
        return new ArrayList<>(Arrays.asList(Arguments.list(words, "command")));
    }

    /** Creates the cached jobs; how many. */
    public int flushCachedJobs(int project) {
        return errors.numberOf(() -> project(project).jobs().flushCached());
    }

    /** Declares that no more jobs follow. */
    public int markAllJobsCreated(int project) {
        return errors.statusOf(() -> project(project).jobs().markAllCreated());
    }

    /** Lets the jobs run. */
    public int startProject(int project) {
        return errors.statusOf(() -> project(project).jobs().start());
    }

    /** Kills the running jobs and drops the waiting ones. */
    public int stopProject(int project) {
        return errors.statusOf(() -> project(project).jobs().stop());
    }

    /** Stops the project, deletes its files and forgets its handle. */
    public int removeProject(int project) {
        return errors.statusOf(() -> grid().removeProject(project));
    }

    /** The number of processors that serve the project. */
    public int addUserClientsToProject(int project) {
        return errors.numberOf(() -> grid().processors(project));
    }

    /** Sends a line to the standard input of a job. */
    public int sendJobPostParameter(int project, long job, String text) {
        return errors.statusOf(() -> project(project).jobs().send(job, text));
    }

    /** The id that jobs see of the project. */
    public int getProjectId(int project) {
        return errors.numberOf(() -> project(project).info().id());
    }

    /** Sets the id that jobs see of the project. */
    public int setProjectId(int project, int id) {
        return errors.statusOf(() -> project(project).setId(id));
    }

    /** The number of the project's parameters. */
    public int getProjectParamCount(int project) {
        return errors.numberOf(() -> project(project).info().params().size());
    }

    /** The name of a parameter by its position from 0. */
    public String getProjectParamName(int project, int index) {
        return errors.valueOf(
                () -> new ArrayList<>(project(project).info().params().keySet()).get(index));
    }

    /** The value of a parameter, null when it is not set. */
    public String getProjectParamValue(int project, String name) {
        return errors.valueOf(
                () -> project(project).info().params().get(Arguments.required(name, "the name")));
    }

    /** One line about the project. */
    public String getProjectDescription(int project) {
        return errors.valueOf(() -> project(project).description());
    }

    // Monitoring

    /** Whether a job or project changes its state within so many milliseconds. */
    public boolean actionWait(long millis) {
        return errors.valueOf(() -> grid().awaitChange(millis));
    }

    /** Waits for all jobs; 0 when every one succeeded. */
    public int waitCompletion(int project) {
        return errors.statusOf(() -> project(project).jobs().awaitCompletion());
    }

    /** Has a thread wait for the jobs and download each result. */
    public int waitCompletionBG(int project) {
        return errors.statusOf(() -> project(project).backgroundWait().start());
    }

    /** Ends the waiting of that thread. */
    public int stopWaitingBG(int project) {
        return errors.statusOf(() -> project(project).backgroundWait().stop());
    }

    /** Whether all jobs have ended. */
    public boolean isCompleted(int project) {
        return errors.valueOf(() -> project(project).jobs().isCompleted());
    }

    /** Whether a job has failed. */
    public boolean isFailed(int project) {
        return errors.valueOf(() -> project(project).jobs().isFailed());
    }

    /** Whether a job has ended. */
    public boolean isJobCompleted(int project, long job) {
        return errors.valueOf(() -> project(project).jobs().isCompleted(job));
    }

    /** 0 created, 1 running, 2 completed, 3 failed, 4 stopped. */
    public int getProjectStatus(int project) {
        return errors.numberOf(() -> project(project).jobs().state().ordinal());
    }

    /** Milliseconds since the start, or from start to end. */
    public long getUsedTime(int project) {
        return errors.valueOf(() -> project(project).jobs().usedTime());
    }

    /** Milliseconds of processor time of the ended jobs. */
    public long getUsedCpuTime(int project) {
        return errors.valueOf(() -> project(project).jobs().usedCpuTime());
    }

    /** A figure of the project by its name, null when there is none of that name. */
    public String getProjectStatistic(int project, String name) {
        return errors.valueOf(() -> {
            Long value =
                    project(project).jobs().statistics().get(Arguments.required(name, "the name"));
            return value == null ? null : value.toString();
        });
    }

    // Results

    /** Sets the directory to download to. */
    public int setDownloadDir(int project, String directory) {
        return errors.statusOf(() -> results(project).setDownloadDir(directory));
    }

    /** Sets the directory to unpack to. */
    public int setUnzipDir(int project, String directory) {
        return errors.statusOf(() -> results(project).setUnzipDir(directory));
    }

    /** Downloads the results of a completed project; how many archives. */
    public int downloadResult(int project) {
        return downloadResult(project, false);
    }

    /** Downloads the results, with partial also before the project is completed; how many. */
    public int downloadResult(int project, boolean partial) {
        return errors.numberOf(() -> project(project).download(partial));
    }

    /** Unpacks the downloaded results; how many files. */
    public int unzip(int project) {
        return errors.numberOf(() -> results(project).unzip());
    }

    /** Unpacks an archive, or one entry of it, into a directory; how many files. */
    public int unzipFile(String archive, String directory, String entry) {
        return errors.numberOf(() -> Results.unzip(archive, directory, entry));
    }

    /** Has each result downloaded as soon as its job ends. */
    public int setStreamResults(int project, boolean stream) {
        return errors.statusOf(() -> results(project).setStream(stream));
    }

    /** The number of streamed results. */
    public int getStreamedResultFilesCount(int project) {
        return errors.numberOf(() -> results(project).streamedCount());
    }

    /** The name of a streamed result by its position from 0. */
    public String getStreamedResultFileName(int project, int index) {
        return errors.valueOf(() -> results(project).streamedName(index));
    }

    /** The number of results that can be downloaded. */
    public int getResultFileCount(int project) {
        return errors.numberOf(() -> results(project).count());
    }

    /** The name of a result that can be downloaded by its position from 0. */
    public String getResultFileName(int project, int index) {
        return errors.valueOf(() -> results(project).name(index));
    }

    /** The path of one archive with the results of all jobs. */
    public String getResultFile(int project) {
        return errors.valueOf(() -> results(project).merged().toString());
    }

    /** The path of the directory with the results. */
    public String getResultDirectory(int project) {
        return errors.valueOf(() -> results(project).directory().toString());
    }

    private Results results(int project) throws GridException {
        return project(project).results();
    }

    // Parallel-each

    /** The object for parallel-each runs that are described piece by piece. */
    public PeachWrapper getPeachWrapper() {
        return errors.valueOf(() -> new PeachWrapper(grid()));
    }

    /** Runs a parallel-each computation described by "key=value" arguments; its handle. */
    public int peach(String[] arguments) {
        return errors.numberOf(() -> {
            PeachWrapper wrapper = new PeachWrapper(grid());
            return grid().peach(handle -> PeachArguments.set(wrapper, handle, arguments));
        });
    }

    /** The next result file of a parallel-each run, null when there is none. */
    public String peachNextFile(int handle) {
        return getPeachWrapper().nextFile(handle);
    }

    /** Ends a parallel-each run and forgets it. */
    public void peachDone(int handle) {
        getPeachWrapper().done(handle);
    }
}
