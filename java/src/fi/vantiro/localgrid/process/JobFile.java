package fi.vantiro.localgrid.process;

import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.Path;

/**
 * The files through which a launcher's far side learns what a job is and says how it ended. Without
 * a launcher there are none.
 */
public final class JobFile {
    private final Path path;

    public JobFile(Path path) {
        this.path = path;
    }

    public Path path() {
        return path;
    }

    /** What the launcher of the job wrote. */
    public Path launcherLog() {
        return beside(".launcher");
    }

    private Path beside(String suffix) {
        return path.resolveSibling(path.getFileName() + suffix);
    }

    /** Removes them all. */
    public void delete() throws IOException {
        for (String suffix : new String[] {"", ".word", ".launcher"}) {
            Files.deleteIfExists(beside(suffix));
        }
    }
}
