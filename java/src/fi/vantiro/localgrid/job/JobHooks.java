package fi.vantiro.localgrid.job;

import fi.vantiro.localgrid.base.GridException;
import fi.vantiro.localgrid.files.Outputs;
import fi.vantiro.localgrid.project.Results;
import java.io.IOException;
import java.nio.file.Path;
import java.util.Collection;
import java.util.Collections;
import java.util.Map;
import java.util.function.Consumer;

/** What a project has done around the process of each of its jobs; by default nothing. */
public interface JobHooks {
    JobHooks NONE = new JobHooks() {};

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

    /** Who receives the lines of the job's standard output while it runs; null for nobody. */
    default Consumer<String> lines(int job) {
        return null;
    }

    /** Takes the outputs over before the working directory goes; by default into an archive. */
    default void ended(Results results, int job, Outputs outputs, boolean succeeded)
            throws GridException, IOException {
        results.add(job, outputs);
    }
}
