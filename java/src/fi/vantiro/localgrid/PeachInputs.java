package fi.vantiro.localgrid;

import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.LinkOption;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.List;
import java.util.Map;

/** Everything that the jobs of a parallel-each run find in their working directories. */
final class PeachInputs {
    private final PeachDescription description;
    private final Path archives;

    PeachInputs(PeachDescription description, Path stateDir) {
        this.description = description;
        archives = stateDir.resolve("inputs");
    }

    /** Checks the inputs and brings their archives in the state directory up to date. */
    void prepare() throws GridException, IOException {
        description.assignJobFiles();
        String bundle = description.exeBundle.isEmpty() ? "" : "-" + description.exeBundle;
        description.exe.prepare(archives.resolve("exe" + bundle + ".jar"));
        int number = 0;
        for (InputGroup data : description.dataBundles()) {
            number++;
            data.prepare(archives.resolve("data-" + number + ".jar"));
        }
        description.jobInputs.prepare(archives.resolve("job.jar"));
        description.params.prepare(archives.resolve("param.jar"));
        for (Path resource : description.externalResources) {
            if (!Files.exists(resource)) {
                throw new GridException(
                        Status.NOT_FOUND, "there is no external resource " + resource);
            }
        }
    }

    /** Fills one job's working directory and environment. */
    void place(int job, Path directory, Map<String, String> environment) throws IOException {
        List<InputGroup> groups = new ArrayList<>(description.dataBundles());
        groups.add(description.params);
        groups.add(description.jobInputs);
        groups.add(description.exe);
        for (InputGroup group : groups) {
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
        addExtras("SOURCE", description.sourceExtras, environment);
        addExtras("EXE", description.exe.extras, environment);
        for (InputGroup data : description.dataBundles()) {
            addExtras("DATA", data.extras, environment);
        }
        addExtras("JOB", description.jobInputs.extras, environment);
        addExtras("PARAM", description.params.extras, environment);
    }

    private static void addExtras(
            String kind, Map<String, String> extras, Map<String, String> environment) {
        String prefix = "VANTIRO_EXTRA_" + kind + "_";
        extras.forEach((key, value) -> environment.put(Arguments.variable(prefix, key), value));
    }
}
