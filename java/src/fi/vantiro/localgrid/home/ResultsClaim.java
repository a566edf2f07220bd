package fi.vantiro.localgrid.home;

import fi.vantiro.localgrid.base.GridException;
import fi.vantiro.localgrid.base.Status;
import fi.vantiro.localgrid.files.AtomicFile;
import fi.vantiro.localgrid.files.KernelLock;
import fi.vantiro.localgrid.files.Trees;
import java.io.IOException;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.nio.file.NoSuchFileException;
import java.nio.file.Path;
import java.nio.file.Paths;

/**
 * A note in a directory of results on the project whose they are: another one, of any program, that
 * put its own there would mix the two.
 */
final class ResultsClaim {
    private static final String NOTE = ".vantiro.project";

    private ResultsClaim() {}

    /** Notes a project, unless the directory is that of another one which is still there. */
    static void make(Path directory, Path owner, Path project) throws GridException, IOException {
        Trees.create(directory);
        Path note = directory.resolve(NOTE);
        String claim = owner + "\0" + project;
        String present = text(note);
        if (present.equals(claim)) {
            return;
        }
        String[] other = present.split("\0");
        if (other.length == 2 && isThere(Paths.get(other[0]), Paths.get(other[1]))) {
            throw new GridException(Status.WRONG_STATE,
                    directory + " has the results of another project (" + other[1]
                            + "); name another directory, or remove that project first");
        }
        AtomicFile.write(note, out -> out.write(claim.getBytes(StandardCharsets.UTF_8)));
    }

    private static boolean isThere(Path owner, Path project) throws GridException, IOException {
        return text(project.resolve(ProjectDirectory.OWNER)).equals(owner.getFileName().toString())
                && KernelLock.isHeld(owner, 1);
    }

    private static String text(Path file) throws IOException {
        try {
            return new String(Files.readAllBytes(file), StandardCharsets.UTF_8);
        } catch (NoSuchFileException e) {
            return "";
        }
    }
}
