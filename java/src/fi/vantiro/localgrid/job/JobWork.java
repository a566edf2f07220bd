package fi.vantiro.localgrid.job;

import fi.vantiro.localgrid.base.GridException;
import fi.vantiro.localgrid.files.Outputs;
import fi.vantiro.localgrid.process.JobFile;
import fi.vantiro.localgrid.process.Keeper;
import java.io.IOException;
import java.nio.file.Path;
import java.util.Collection;
import java.util.Map;

/** What is done for jobs around their processes. */
public interface JobWork {
    /** Makes ready for jobs to run, as things are at this moment. */
    void open() throws GridException, IOException;

    /** No more jobs are to run. */
    void close();

    Keeper keeper() throws GridException, IOException;

    /** Where the job is to work. */
    Path directory(int job);

    /** What tells the keeper about the job. */
    JobFile file(int job);

    /** Fills the working directory and the environment that are the job's own. */
    void prepare(int job, Path directory, Map<String, String> environment)
            throws GridException, IOException;

    /** Who receives the lines that the jobs write; null for nobody. */
    LineFeed lines();

    /** The outputs to keep, names or patterns; none means every file that the job wrote. */
    Collection<String> outputs();

    /**
     * Takes the outputs over before the working directory goes; the directory where they are as
     * files now, null when there is none.
     */
    Path collect(int job, Outputs outputs, boolean succeeded) throws GridException, IOException;

    /** Whether the working directories stay. */
    boolean keepsWork();

    void deleteDirectory(int job) throws IOException;
}
