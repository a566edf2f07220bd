package fi.vantiro.localgrid.files;

import java.io.IOException;
import java.nio.file.DirectoryIteratorException;
import java.nio.file.DirectoryNotEmptyException;
import java.nio.file.LinkOption;
import java.nio.file.NoSuchFileException;
import java.nio.file.Path;
import java.nio.file.SecureDirectoryStream;
import java.nio.file.attribute.PosixFileAttributeView;
import java.nio.file.attribute.PosixFileAttributes;
import java.util.concurrent.ThreadLocalRandom;

/**
 * Deletes a tree of any depth and width. It goes from directory to directory by their handles, so
 * that a link put in the place of one leads nowhere. What cannot go stays, and all else goes.
 */
final class Deletion {
    /**
     * What lies deeper is moved to the top of the tree first: paths stay short enough for the
     * system, and few files open.
     */
    private static final int MAX_DEPTH = 12;

    private final Path tree;
    private SecureDirectoryStream<Path> top;
    private Failures failures;
    /** How many entries were deleted, or moved to the top. */
    private int cleared;
    /** Whether a directory was not empty at its end: what was moved, or is new, is left to do. */
    private boolean refilled;

    private Deletion(Path tree) {
        this.tree = tree;
    }

    /** Deletes a tree; what could not be deleted. */
    static Failures of(Path tree) throws IOException {
        Deletion deletion = new Deletion(tree);
        try (SecureDirectoryStream<Path> above = Trees.open(tree.getParent())) {
            do {
                deletion.failures = new Failures();
                deletion.cleared = 0;
                deletion.refilled = false;
                deletion.delete(above, tree.getFileName(), tree, 0);
            } while (deletion.refilled && deletion.cleared > 0);
        } catch (NoSuchFileException e) {
            return new Failures();
        }
        return deletion.failures;
    }

    private void delete(SecureDirectoryStream<Path> parent, Path name, Path path, int depth) {
        try {
            PosixFileAttributes attributes =
                    parent.getFileAttributeView(
                                  name, PosixFileAttributeView.class, LinkOption.NOFOLLOW_LINKS)
                            .readAttributes();
            if (!attributes.isDirectory()) {
                parent.deleteFile(name);
                cleared++;
                return;
            }
            if (!attributes.permissions().containsAll(Trees.ACCESS)) {
                Trees.giveAccess(path);
            }
            if (depth == MAX_DEPTH) {
                String free = Long.toHexString(ThreadLocalRandom.current().nextLong());
                parent.move(name, top, tree.getFileSystem().getPath(free));
                cleared++;
                return;
            }
            empty(parent, name, path, depth);
            parent.deleteDirectory(name);
            cleared++;
        } catch (NoSuchFileException e) {
            // Somebody else deletes the tree at the same time.
            cleared++;
        } catch (DirectoryNotEmptyException e) {
            refilled = true;
        } catch (IOException e) {
            failures.add(path, e);
        } catch (DirectoryIteratorException e) {
            failures.add(path, e.getCause());
        }
    }

    private void empty(SecureDirectoryStream<Path> parent, Path name, Path path, int depth)
            throws IOException {
        try (SecureDirectoryStream<Path> directory =
                        parent.newDirectoryStream(name, LinkOption.NOFOLLOW_LINKS)) {
            if (depth == 0) {
                top = directory;
            }
            for (Path entry : directory) {
                delete(directory, entry.getFileName(), path.resolve(entry.getFileName()),
                        depth + 1);
            }
        }
    }
}
