package fi.vantiro.localgrid.home;

import fi.vantiro.localgrid.base.Log;
import fi.vantiro.localgrid.files.Failures;
import fi.vantiro.localgrid.files.Trees;
import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.NoSuchFileException;
import java.nio.file.Path;
import java.util.List;
import java.util.concurrent.ThreadLocalRandom;
import java.util.logging.Logger;

/** What is being deleted in the grid's home, and what nobody could delete. */
final class Trash {
    private static final Logger LOG = Logger.getLogger(Log.NAME);

    private final Path removed;
    private final Path left;

    Trash(Path home) {
        removed = home.resolve("removed");
        left = home.resolve("left");
    }

    /** Takes a tree away, to be deleted later. */
    Path take(Path tree) throws IOException {
        Path place = removed.resolve(Long.toHexString(ThreadLocalRandom.current().nextLong()));
        Trees.giveAccess(tree);
        return Files.move(tree, place);
    }

    /** Deletes a tree where it is. What cannot go is named, and set aside for good. */
    void delete(Path tree) throws IOException {
        Failures failures = Trees.delete(tree);
        if (failures.isEmpty()) {
            return;
        }
        Path place = left.resolve(Long.toHexString(ThreadLocalRandom.current().nextLong()));
        try {
            Trees.createPrivate(left);
            Files.move(tree, place);
        } catch (NoSuchFileException e) {
            // Another program that deletes it has set it aside.
            return;
        }
        String what = failures.toString().replace(tree.toString(), place.toString());
        LOG.warning("some files cannot be deleted (" + what + "); the grid leaves them to you");
    }

    /** What was taken away and is not deleted yet. */
    List<Path> trees() throws IOException {
        return Trees.list(removed, "*");
    }
}
