package fi.vantiro.localgrid.peach;

import fi.vantiro.localgrid.job.WorkDirectory;
import java.nio.file.Path;
import java.nio.file.Paths;
import java.util.HashMap;
import java.util.Map;

/** The names in a job's directory that its inputs take: no two files can have the same. */
final class InputPlaces {
    private final InputPlaces common;
    private final Map<String, Path> files = new HashMap<>();
    /** The directories that lead to files, each with one of these. */
    private final Map<String, Path> directories = new HashMap<>();

    /** The places of one job, besides those that all jobs have. */
    InputPlaces(InputPlaces common) {
        this.common = common;
    }

    InputPlaces() {
        this(null);
    }

    /** Takes a place; a file that has it already may have it again. */
    void take(String target, Path source) {
        if (target.equals(WorkDirectory.STDOUT) || target.equals(WorkDirectory.STDERR)) {
            throw new IllegalArgumentException(
                    source + " cannot be " + target + ", which is what the job writes itself");
        }
        check(target, source);
        files.put(target, source);
        for (Path path = Paths.get(target).getParent(); path != null; path = path.getParent()) {
            directories.put(path.toString(), source);
        }
    }

    private void check(String target, Path source) {
        refuse(files.get(target), source, target);
        refuse(directories.get(target), source, target);
        for (Path path = Paths.get(target).getParent(); path != null; path = path.getParent()) {
            refuse(files.get(path.toString()), source, path.toString());
        }
        if (common != null) {
            common.check(target, source);
        }
    }

    private static void refuse(Path present, Path source, String target) {
        if (present != null && !present.equals(source)) {
            throw new IllegalArgumentException(present + " and " + source + " cannot both be "
                    + target + " in a job's directory; give one another name or directory");
        }
    }

    void leave(String target) {
        files.remove(target);
    }
}
