package fi.vantiro.localgrid.process;

import fi.vantiro.localgrid.base.GridException;
import fi.vantiro.localgrid.base.Status;
import fi.vantiro.localgrid.files.AtomicFile;
import java.io.IOException;
import java.net.URISyntaxException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.nio.file.Paths;

/** Where the keeper's program lies. */
public final class KeeperProgram {
    static final String NAME = "vantiro-keeper";

    private KeeperProgram() {}

    /** The program beside the archive of this class. */
    static Path local() throws GridException {
        try {
            Path archive = Paths.get(KeeperProgram.class.getProtectionDomain()
                                             .getCodeSource()
                                             .getLocation()
                                             .toURI());
            Path program = archive.resolveSibling(NAME);
            if (Files.isExecutable(program)) {
                return program;
            }
            throw new GridException(Status.NOT_FOUND,
                    "jobs cannot be run: there is no program " + NAME + " beside " + archive
                            + "; it belongs to the archive and looks after the jobs' processes");
        } catch (URISyntaxException e) {
            throw new GridException(Status.NOT_FOUND, "jobs cannot be run: " + e.getMessage());
        }
    }

    /**
     * The same program in a directory that other machines see too, under a name of this version:
     * programs of several versions may use one home.
     */
    public static Path sharedIn(Path home) throws GridException, IOException {
        Path program = local();
        Path copy = home.resolve(NAME + "-" + Files.size(program) + "-"
                + Files.getLastModifiedTime(program).toMillis());
        if (!Files.exists(copy)) {
            AtomicFile.copy(program, copy);
        }
        return copy;
    }
}
