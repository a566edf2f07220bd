package fi.vantiro.localgrid.project;

import fi.vantiro.localgrid.base.GridException;
import fi.vantiro.localgrid.files.Outputs;
import fi.vantiro.localgrid.job.LineFeed;
import java.io.IOException;
import java.nio.file.Path;
import java.util.Collection;
import java.util.Collections;
import java.util.Map;

/** What a project has done around the process of each of its jobs; by default nothing. */
public interface JobHooks {
    /** Places inputs in the working directory and adds variables to the environment. */
    default void prepare(int job, Path directory, Map<String, String> environment)
            throws GridException, IOException {}

    /** Whether working directories stay, given what the settings say. */
    default boolean keepsWork(boolean setting) {
        return setting;
    }

    /** The outputs to keep, names or patterns; none means every file that the job wrote. */
    default Collection<String> outputs() {
        return Collections.emptyList();
    }

    /** Who receives the lines of the jobs' standard outputs while they run; null for nobody. */
    default LineFeed lines() {
        return null;
    }

    /**
     * Takes the outputs over before the working directory goes; the directory where they are as
     * files now, null when there is none.
     */
    Path ended(int job, Outputs outputs, boolean succeeded) throws GridException, IOException;
}
