package fi.vantiro.localgrid.peach;

import fi.vantiro.localgrid.base.Arguments;
import fi.vantiro.localgrid.base.GridException;
import fi.vantiro.localgrid.base.Status;
import fi.vantiro.localgrid.files.Trees;
import fi.vantiro.localgrid.home.StateDirectory;
import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.LinkOption;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.LinkedHashMap;
import java.util.List;
import java.util.Map;

/** Everything that the jobs of a parallel-each run find in their working directories. */
final class PeachInputs {
    private static final String EXTRA = "VANTIRO_EXTRA_";

    private final PeachDescription description;

    PeachInputs(PeachDescription description) {
        this.description = description;
        description.assignJobFiles();
    }

    /** Fails unless everything is there. */
    void check() throws GridException {
        extras().forEach((prefix, extras) -> Arguments.checkVariables(prefix, extras.keySet()));
        for (InputGroup group : groups()) {
            group.checkReadable();
        }
        for (Path resource : description.externalResources) {
            if (!Files.exists(resource)) {
                throw new GridException(
                        Status.NOT_FOUND, "there is no external resource " + resource);
            }
        }
    }

    private List<InputGroup> groups() {
        List<InputGroup> groups = new ArrayList<>(description.dataBundles());
        groups.add(description.params);
        groups.add(description.jobInputs);
        groups.add(description.exe);
        return groups;
    }

    /** Brings the archives of the inputs in the state directory up to date. */
    void prepare(StateDirectory state) throws GridException, IOException {
        String bundle = description.exeBundle.isEmpty() ? "" : "-" + description.exeBundle;
        description.exe.prepare(state, "inputs/exe" + bundle + ".jar");
        int number = 0;
        for (InputGroup data : description.dataBundles()) {
            number++;
            data.prepare(state, "inputs/data-" + number + ".jar");
        }
        description.jobInputs.prepare(state, "inputs/job.jar");
        description.params.prepare(state, "inputs/param.jar");
    }

    /** Ends what the jobs are given from. */
    void close() throws IOException {
        for (InputGroup group : groups()) {
            group.close();
        }
    }

    /** Fills one job's working directory and environment. */
    void place(int job, Path directory, Map<String, String> environment) throws IOException {
        for (InputGroup group : groups()) {
            group.place(job, directory);
        }
        for (Path resource : description.externalResources) {
            Trees.link(resource, directory.resolve(resource.getFileName()));
        }
        makeProgramExecutable(directory);
        addExtras(environment);
    }

    private void makeProgramExecutable(Path directory) throws IOException {
        Path program = directory.resolve(description.executable.split("\\s", 2)[0]).normalize();
        if (program.startsWith(directory)
                && Files.isRegularFile(program, LinkOption.NOFOLLOW_LINKS)) {
            Trees.makeExecutable(program);
        }
    }

    private void addExtras(Map<String, String> environment) {
        extras().forEach(
                (prefix, extras)
                        -> extras.forEach((key, value)
                                                  -> environment.put(
                                                          Arguments.variable(prefix, key), value)));
    }

    /** The extras by the beginning of their variables' names. */
    private Map<String, Map<String, String>> extras() {
        Map<String, String> data = new LinkedHashMap<>();
        description.dataBundles().forEach(bundle -> data.putAll(bundle.extras));
        Map<String, Map<String, String>> extras = new LinkedHashMap<>();
        extras.put(EXTRA + "SOURCE_", description.sourceExtras);
        extras.put(EXTRA + "EXE_", description.exe.extras);
        extras.put(EXTRA + "DATA_", data);
        extras.put(EXTRA + "JOB_", description.jobInputs.extras);
        extras.put(EXTRA + "PARAM_", description.params.extras);
        return extras;
    }
}
