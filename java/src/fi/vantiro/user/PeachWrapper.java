package fi.vantiro.user;

import fi.vantiro.localgrid.Arguments;
import fi.vantiro.localgrid.Grid;
import fi.vantiro.localgrid.PeachKey;
import fi.vantiro.localgrid.PeachRun;
import java.nio.file.Path;
import java.util.stream.Stream;

/** Parallel-each runs by their handles: described piece by piece, executed, read out, ended. */
public final class PeachWrapper {
    private final Grid grid;

    PeachWrapper(Grid grid) {
        this.grid = grid;
    }

    /** Starts the description of a run; its handle. */
    public int get() {
        return grid.errors().call(() -> grid.newPeachRun().handle());
    }

    /** Runs all jobs to their end. */
    public int execute(int handle) {
        PeachRun run = run(handle);
        return grid.errors().act(run::execute);
    }

    /** The next result file, null when there is none (yet). */
    public String nextFile(int handle) {
        PeachRun run = run(handle);
        Path file = grid.errors().get(run::nextFile);
        return file == null ? null : file.toString();
    }

    /** Notes that the caller is through with the result file of that number, counted from 1. */
    public void postProcessed(int handle, int number) {
        run(handle).postProcessed(number);
    }

    /** Ends the run and forgets it. */
    public void done(int handle) {
        PeachRun run = run(handle);
        grid.errors().get(() -> {
            run.done();
            return null;
        });
    }

    /** The handle of the run's project. */
    public int getProjectHandle(int handle) {
        return run(handle).projectHandle();
    }

    /** The id that jobs see of the run's project. */
    public int getProjectId(int handle) {
        return run(handle).projectId();
    }

    /** Whether the sources differ from those of the last run with the same state directory. */
    public boolean sourcesChanged(int handle) {
        PeachRun run = run(handle);
        return grid.errors().get(run::sourcesChanged);
    }

    /** The text of the run's last failure, null when there was none. */
    public String getLastErrorMessage(int handle) {
        return run(handle).message();
    }

    /** Sends each line that a job writes to a handler, as "job:line". */
    public void setIntermediateResultHandler(int handle, IntermediateResultHandler handler) {
        Arguments.required(handler, "the handler");
        run(handle).setHandler(handler::handle);
    }

    /** Names the run and its project. */
    public void setName(int handle, String name) {
        set(handle, PeachKey.NAME, name);
    }

    /** Sets the directory that keeps outputs and what is remembered from run to run. */
    public void setStateDir(int handle, String directory) {
        set(handle, PeachKey.STATE_DIR, directory);
    }

    /** Sets a text for the project's description. */
    public void setDescription(int handle, String text) {
        set(handle, PeachKey.DESCRIPTION, text);
    }

    /** Has progress told on standard error. */
    public void setMessages(int handle, boolean on) {
        set(handle, PeachKey.MESSAGES, String.valueOf(on));
    }

    /** Sets the priority; a higher number goes first. */
    public void setPriority(int handle, int priority) {
        set(handle, PeachKey.PRIORITY, String.valueOf(priority));
    }

    /** Sets the priority: low, normal, high or a number. */
    public void setPriority(int handle, String priority) {
        set(handle, PeachKey.PRIORITY, priority);
    }

    /** Sets the project id that jobs see. */
    public void setProjectId(int handle, int id) {
        set(handle, PeachKey.PROJECT_ID, String.valueOf(id));
    }

    /** Sets an archive to write with the outputs of all jobs. */
    public void setResultFile(int handle, String file) {
        set(handle, PeachKey.RESULT_FILE, file);
    }

    /** Sets the number of jobs. */
    public void setJobs(int handle, int jobs) {
        set(handle, PeachKey.JOBS, String.valueOf(jobs));
    }

    /** Lets the run succeed although jobs fail. */
    public void setAllowPartial(int handle, boolean on) {
        set(handle, PeachKey.ALLOW_PARTIAL, String.valueOf(on));
    }

    /** Has the project removed when the run is done. */
    public void setRemove(int handle, boolean on) {
        set(handle, PeachKey.REMOVE, String.valueOf(on));
    }

    /** Has working directories and processed result files removed. */
    public void setCleanup(int handle, boolean on) {
        set(handle, PeachKey.CLEANUP, String.valueOf(on));
    }

    /** Ends the run by itself after its last result file. */
    public void setClose(int handle, boolean on) {
        set(handle, PeachKey.CLOSE, String.valueOf(on));
    }

    /** Hands result files out while other jobs still run. */
    public void setStream(int handle, boolean on) {
        set(handle, PeachKey.STREAM, String.valueOf(on));
    }

    /** Adds a file that the executable is made from. */
    public void addSourceFile(int handle, String file) {
        set(handle, PeachKey.SOURCE_FILE, file);
    }

    /** Adds a value to what the sources consist of. */
    public void putSourceExtras(int handle, String key, String value) {
        set(handle, PeachKey.SOURCE_EXTRA, key, value);
    }

    /** Names the executable's archive, or the bundle to run when no files are added. */
    public void setExeBundleName(int handle, String name) {
        set(handle, PeachKey.EXE_BUNDLE_NAME, name);
    }

    /** Sets the shell command line that every job runs. */
    public void setExecutable(int handle, String line) {
        set(handle, PeachKey.EXECUTABLE, line);
    }

    /** Packs the executable's files anew in each run. */
    public void setExeSkipDigest(int handle, boolean on) {
        set(handle, PeachKey.EXE_SKIP_DIGEST, String.valueOf(on));
    }

    /**
     * Adds a file of the executable: its name for jobs, its platform and octal mode may be empty.
     */
    public void addExeFile(int handle, String file, String target, String platform, String mode) {
        set(handle, PeachKey.EXE_FILE, file, target, platform, mode);
    }

    /** Adds a variable for the executable. */
    public void putExeExtras(int handle, String key, String value) {
        set(handle, PeachKey.EXE_EXTRA, key, value);
    }

    /** Adds an approved bundle that the executable needs. */
    public void addExeImport(int handle, String name) {
        set(handle, PeachKey.EXE_IMPORT, name);
    }

    /** Adds an output to keep, a name or a pattern. */
    public void addOutputFile(int handle, String name) {
        set(handle, PeachKey.OUTPUT_FILE, name);
    }

    /** Starts a data bundle whose files appear in the working directory itself. */
    public void newDataBundle(int handle) {
        set(handle, PeachKey.DATA_BUNDLE, "");
    }

    /** Starts a data bundle whose files appear in a directory of that name. */
    public void newDataBundle(int handle, String name) {
        set(handle, PeachKey.DATA_BUNDLE, name);
    }

    /** Packs the data bundle's files anew in each run. */
    public void setDataSkipDigest(int handle, boolean on) {
        set(handle, PeachKey.DATA_SKIP_DIGEST, String.valueOf(on));
    }

    /** Adds a file to the data bundle. */
    public void addDataFile(int handle, String file) {
        set(handle, PeachKey.DATA_FILE, file);
    }

    /** Adds a file to the data bundle below a directory of its own. */
    public void addDataFileWithDir(int handle, String file, String directory) {
        set(handle, PeachKey.DATA_FILE_WITH_DIR, file, directory);
    }

    /** Adds a variable about the data. */
    public void putDataExtras(int handle, String key, String value) {
        set(handle, PeachKey.DATA_EXTRA, key, value);
    }

    /** Gives jobs copies of the data bundle's files, or else links to them. */
    public void setDataCopy(int handle, boolean on) {
        set(handle, PeachKey.DATA_COPY, String.valueOf(on));
    }

    /** Packs the job files anew in each run. */
    public void setJobSkipDigest(int handle, boolean on) {
        set(handle, PeachKey.JOB_SKIP_DIGEST, String.valueOf(on));
    }

    /** Sets the names under which each job finds its files. */
    public void setJobFileNames(int handle, String[] names) {
        set(handle, PeachKey.JOB_FILE_NAMES, names);
    }

    /** Adds the files of the next job. */
    public void addJobFile(int handle, String[] files) {
        set(handle, PeachKey.JOB_FILE, files);
    }

    /** Adds the files of the next job, which finds them below a directory. */
    public void addJobFileWithDir(int handle, String directory, String[] files) {
        Arguments.list(files, "files");
        set(handle, PeachKey.JOB_FILE_WITH_DIR,
                Stream.concat(Stream.of(directory), Stream.of(files)).toArray(String[] ::new));
    }

    /** Adds a variable about the job files. */
    public void putJobExtras(int handle, String key, String value) {
        set(handle, PeachKey.JOB_EXTRA, key, value);
    }

    /** Packs the parameter files anew in each run. */
    public void setParamSkipDigest(int handle, boolean on) {
        set(handle, PeachKey.PARAM_SKIP_DIGEST, String.valueOf(on));
    }

    /** Adds a file that every job gets. */
    public void addParamFile(int handle, String file) {
        set(handle, PeachKey.PARAM_FILE, file);
    }

    /** Adds a file that every job gets under another name. */
    public void addParamFile(int handle, String file, String target) {
        set(handle, PeachKey.PARAM_FILE_WITH_TARGET, file, target);
    }

    /** Adds a file that every job gets below a directory. */
    public void addParamFileWithDir(int handle, String file, String directory) {
        set(handle, PeachKey.PARAM_FILE_WITH_DIR, file, directory);
    }

    /** Adds a variable about the parameter files. */
    public void putParamExtras(int handle, String key, String value) {
        set(handle, PeachKey.PARAM_EXTRA, key, value);
    }

    /** Adds an absolute path or file: URL that every job gets as a link. */
    public void addParamExternalResource(int handle, String resource) {
        set(handle, PeachKey.PARAM_EXTERNAL_RESOURCE, resource);
    }

    /** Gives jobs copies of the parameter files, or else links to them. */
    public void setParamCopy(int handle, boolean on) {
        set(handle, PeachKey.PARAM_COPY, String.valueOf(on));
    }

    /** Sets a project parameter. */
    public void putProjectParam(int handle, String key, String value) {
        set(handle, PeachKey.PROJECT_PARAM, key, value);
    }

    private void set(int handle, PeachKey key, String... values) {
        run(handle).configure(description -> key.set(description, values));
    }

    private PeachRun run(int handle) {
        return grid.peachRun(handle);
    }
}
