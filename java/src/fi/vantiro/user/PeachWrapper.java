package fi.vantiro.user;

import static fi.vantiro.localgrid.base.Arguments.orEmpty;
import static fi.vantiro.localgrid.base.Arguments.path;
import static fi.vantiro.localgrid.base.Arguments.required;

import fi.vantiro.localgrid.Grid;
import fi.vantiro.localgrid.base.GridException;
import fi.vantiro.localgrid.peach.InputFile;
import fi.vantiro.localgrid.peach.PeachDescription;
import fi.vantiro.localgrid.peach.PeachRun;
import java.io.IOException;
import java.nio.file.Path;
import java.util.function.Consumer;

/** Parallel-each runs by their handles: described piece by piece, executed, read out, ended. */
public final class PeachWrapper {
    private final Grid grid;

    PeachWrapper(Grid grid) {
        this.grid = grid;
    }

    /** Starts the description of a run; its handle. */
    public int get() {
        return grid.errors().numberOf(() -> grid.newPeachRun().handle());
    }

    /** Runs all jobs to their end. */
    public int execute(int handle) {
        return grid.errors().statusOf(() -> on(handle, run -> {
            run.execute();
            return null;
        }));
    }

    /** The next result file, null when there is none (yet). */
    public String nextFile(int handle) {
        Path file = get(handle, PeachRun::nextFile);
        return file == null ? null : file.toString();
    }

    /** Notes that the caller is through with the result file of that number, counted from 1. */
    public void postProcessed(int handle, int number) {
        change(handle, run -> run.postProcessed(number));
    }

    /** Ends the run and forgets it. */
    public void done(int handle) {
        get(handle, run -> {
            run.done();
            return null;
        });
    }

    /** The handle of the run's project. */
    public int getProjectHandle(int handle) {
        return get(handle, PeachRun::projectHandle);
    }

    /** The number of the run's project. */
    public int getProjectId(int handle) {
        return get(handle, PeachRun::projectId);
    }

    /** Whether the sources differ from those of the last run with the same state directory. */
    public boolean sourcesChanged(int handle) {
        return get(handle, PeachRun::sourcesChanged);
    }

    /** The text of the run's last failure, null when there was none. */
    public String getLastErrorMessage(int handle) {
        return grid.errors().valueOf(() -> grid.peachRun(handle).errors().message());
    }

    /** Sends each line that a job writes to a handler, as "job:line". */
    public void setIntermediateResultHandler(int handle, IntermediateResultHandler handler) {
        change(handle, run -> run.setHandler(required(handler, "the handler")::handle));
    }

    /** Names the run and its project. */
    public void setName(int handle, String name) {
        set(handle, d -> d.name = required(name, "the name"));
    }

    /** Sets the directory that keeps outputs and what is remembered from run to run. */
    public void setStateDir(int handle, String directory) {
        set(handle, d -> d.stateDir = path(directory));
    }

    /** Sets a text for the project's description. */
    public void setDescription(int handle, String text) {
        set(handle, d -> d.description = orEmpty(text));
    }

    /** Has progress told on standard error. */
    public void setMessages(int handle, boolean on) {
        set(handle, d -> d.messages = on);
    }

    /** Sets the priority; a higher number goes first. */
    public void setPriority(int handle, int priority) {
        set(handle, d -> d.priority = priority);
    }

    /** Sets the priority: low, normal, high or a number. */
    public void setPriority(int handle, String priority) {
        set(handle, d -> d.setPriority(priority));
    }

    /** Sets the number of the run's project. */
    public void setProjectId(int handle, int id) {
        get(handle, run -> {
            run.setProjectId(id);
            return null;
        });
    }

    /** Sets an archive to write with the outputs of all jobs. */
    public void setResultFile(int handle, String file) {
        set(handle, d -> d.resultFile = path(file));
    }

    /** Sets the number of jobs. */
    public void setJobs(int handle, int jobs) {
        set(handle, d -> d.setJobs(jobs));
    }

    /** Lets the run succeed although jobs fail. */
    public void setAllowPartial(int handle, boolean on) {
        set(handle, d -> d.allowPartial = on);
    }

    /** Has the project removed when the run is done. */
    public void setRemove(int handle, boolean on) {
        set(handle, d -> d.remove = on);
    }

    /** Has working directories and processed result files removed. */
    public void setCleanup(int handle, boolean on) {
        set(handle, d -> d.cleanup = on);
    }

    /** Ends the run by itself after its last result file. */
    public void setClose(int handle, boolean on) {
        set(handle, d -> d.close = on);
    }

    /** Hands result files out while other jobs still run. */
    public void setStream(int handle, boolean on) {
        set(handle, d -> d.stream = on);
    }

    /** Adds a file that the executable is made from. */
    public void addSourceFile(int handle, String file) {
        set(handle, d -> d.addSource(file));
    }

    /** Adds a value to what the sources consist of. */
    public void putSourceExtras(int handle, String key, String value) {
        set(handle, d -> d.sourceExtras.put(key(key), required(value, "the value")));
    }

    /** Names the executable's archive, or the bundle to run when no files are added. */
    public void setExeBundleName(int handle, String name) {
        set(handle, d -> d.setExeBundle(orEmpty(name)));
    }

    /** Sets the shell command line that every job runs. */
    public void setExecutable(int handle, String line) {
        set(handle, d -> d.executable = required(line, "the executable").trim());
    }

    /** Packs the executable's files anew in each run. */
    public void setExeSkipDigest(int handle, boolean on) {
        set(handle, d -> d.exe.skipDigest = on);
    }

    /**
     * Adds a file of the executable: its name for jobs, its platform and octal mode may be empty.
     */
    public void addExeFile(int handle, String file, String target, String platform, String mode) {
        set(handle, d -> d.addExeFile(file, orEmpty(target), orEmpty(platform), orEmpty(mode)));
    }

    /** Adds a variable for the executable. */
    public void putExeExtras(int handle, String key, String value) {
        set(handle, d -> d.exe.extras.put(key(key), required(value, "the value")));
    }

    /** Adds an approved bundle that the executable needs. */
    public void addExeImport(int handle, String name) {
        set(handle, d -> d.exeImports.add(required(name, "the bundle's name")));
    }

    /** Adds an output to keep, a name or a pattern. */
    public void addOutputFile(int handle, String name) {
        set(handle, d -> d.addOutput(name));
    }

    /** Starts a data bundle whose files appear in the working directory itself. */
    public void newDataBundle(int handle) {
        newDataBundle(handle, "");
    }

    /** Starts a data bundle whose files appear in a directory of that name. */
    public void newDataBundle(int handle, String name) {
        set(handle, d -> d.newDataBundle(orEmpty(name)));
    }

    /** Packs the data bundle's files anew in each run. */
    public void setDataSkipDigest(int handle, boolean on) {
        set(handle, d -> d.data().skipDigest = on);
    }

    /** Adds a file to the data bundle. */
    public void addDataFile(int handle, String file) {
        set(handle, d -> d.addDataFile("", file));
    }

    /** Adds a file to the data bundle below a directory of its own. */
    public void addDataFileWithDir(int handle, String file, String directory) {
        set(handle, d -> d.addDataFile(orEmpty(directory), file));
    }

    /** Adds a variable about the data. */
    public void putDataExtras(int handle, String key, String value) {
        set(handle, d -> d.data().extras.put(key(key), required(value, "the value")));
    }

    /** Gives jobs copies of the data bundle's files, or else links to them. */
    public void setDataCopy(int handle, boolean on) {
        set(handle, d -> d.data().copy = on);
    }

    /** Packs the job files anew in each run. */
    public void setJobSkipDigest(int handle, boolean on) {
        set(handle, d -> d.jobInputs.skipDigest = on);
    }

    /** Sets the names under which each job finds its files. */
    public void setJobFileNames(int handle, String[] names) {
        set(handle, d -> d.setJobFileNames(names));
    }

    /** Adds the files of the next job. */
    public void addJobFile(int handle, String[] files) {
        set(handle, d -> d.addJobFiles("", files));
    }

    /** Adds the files of the next job, which finds them below a directory. */
    public void addJobFileWithDir(int handle, String directory, String[] files) {
        set(handle, d -> d.addJobFiles(orEmpty(directory), files));
    }

    /** Adds a variable about the job files. */
    public void putJobExtras(int handle, String key, String value) {
        set(handle, d -> d.jobInputs.extras.put(key(key), required(value, "the value")));
    }

    /** Packs the parameter files anew in each run. */
    public void setParamSkipDigest(int handle, boolean on) {
        set(handle, d -> d.params.skipDigest = on);
    }

    /** Adds a file that every job gets. */
    public void addParamFile(int handle, String file) {
        set(handle, d -> d.addParamFile("", file));
    }

    /** Adds a file that every job gets under another name. */
    public void addParamFile(int handle, String file, String target) {
        addParamFileWithTarget(handle, file, target);
    }

    /** The same; an empty name leaves the file's own. */
    public void addParamFileWithTarget(int handle, String file, String target) {
        set(handle, d -> d.params.add(InputFile.named(file, orEmpty(target), "")));
    }

    /** Adds a file that every job gets below a directory. */
    public void addParamFileWithDir(int handle, String file, String directory) {
        set(handle, d -> d.addParamFile(orEmpty(directory), file));
    }

    /** Adds a variable about the parameter files. */
    public void putParamExtras(int handle, String key, String value) {
        set(handle, d -> d.params.extras.put(key(key), required(value, "the value")));
    }

    /** Adds an absolute path or file: URL that every job gets as a link. */
    public void addParamExternalResource(int handle, String resource) {
        set(handle, d -> d.addExternalResource(resource));
    }

    /** Gives jobs copies of the parameter files, or else links to them. */
    public void setParamCopy(int handle, boolean on) {
        set(handle, d -> d.params.copy = on);
    }

    /** Sets a project parameter. */
    public void putProjectParam(int handle, String key, String value) {
        set(handle, d -> d.projectParams.put(key(key), required(value, "the value")));
    }

    private static String key(String text) {
        if (orEmpty(text).isEmpty()) {
            throw new IllegalArgumentException("a key must not be empty");
        }
        return text;
    }

    private void set(int handle, Consumer<PeachDescription> change) {
        change(handle, run -> run.configure(change));
    }

    private void change(int handle, Consumer<PeachRun> change) {
        get(handle, run -> {
            change.accept(run);
            return null;
        });
    }

    /** What is done with a run. */
    @FunctionalInterface
    private interface Step<T> {
        T on(PeachRun run) throws GridException, IOException, InterruptedException;
    }

    private <T> T get(int handle, Step<T> step) {
        return grid.errors().valueOf(() -> on(handle, step));
    }

    /** A failure is remembered for the run too. */
    private <T> T on(int handle, Step<T> step)
            throws GridException, IOException, InterruptedException {
        PeachRun run = grid.peachRun(handle);
        return run.errors().remembering(() -> step.on(run));
    }
}
