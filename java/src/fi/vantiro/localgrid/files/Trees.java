package fi.vantiro.localgrid.files;

import java.io.IOException;
import java.nio.file.AccessDeniedException;
import java.nio.file.AtomicMoveNotSupportedException;
import java.nio.file.DirectoryIteratorException;
import java.nio.file.DirectoryStream;
import java.nio.file.FileVisitResult;
import java.nio.file.Files;
import java.nio.file.InvalidPathException;
import java.nio.file.LinkOption;
import java.nio.file.NoSuchFileException;
import java.nio.file.Path;
import java.nio.file.SimpleFileVisitor;
import java.nio.file.StandardCopyOption;
import java.nio.file.attribute.BasicFileAttributes;
import java.nio.file.attribute.FileAttribute;
import java.nio.file.attribute.PosixFilePermission;
import java.nio.file.attribute.PosixFilePermissions;
import java.util.ArrayList;
import java.util.Arrays;
import java.util.List;
import java.util.Set;

/** Operations on files and directory trees. */
public final class Trees {
    private static final FileAttribute<?> PRIVATE =
            PosixFilePermissions.asFileAttribute(PosixFilePermissions.fromString("rwx------"));

    private Trees() {}

    /** Makes a directory unless it, or a link to one, is there. */
    public static void create(Path directory, FileAttribute<?>... attributes) throws IOException {
        if (!Files.isDirectory(directory)) {
            Files.createDirectories(directory, attributes);
        }
    }

    /** The same; a directory that is made is its user's alone. */
    public static void createPrivate(Path directory) throws IOException {
        create(directory, PRIVATE);
    }

    /** What is in a directory under names that fit a pattern. */
    public static List<Path> list(Path directory, String pattern) throws IOException {
        List<Path> found = new ArrayList<>();
        if (Files.isDirectory(directory)) {
            try (DirectoryStream<Path> paths = Files.newDirectoryStream(directory, pattern)) {
                paths.forEach(found::add);
            } catch (DirectoryIteratorException e) {
                throw e.getCause();
            }
        }
        return found;
    }

    /** Deletes a tree if it is there; links in it are removed, not followed. */
    public static void delete(Path tree) throws IOException {
        if (!Files.exists(tree, LinkOption.NOFOLLOW_LINKS)) {
            return;
        }
        Files.walkFileTree(tree, new SimpleFileVisitor<Path>() {
            @Override
            public FileVisitResult preVisitDirectory(Path dir, BasicFileAttributes attributes)
                    throws IOException {
                try {
                    addPermissions(dir, PosixFilePermission.OWNER_WRITE,
                            PosixFilePermission.OWNER_EXECUTE);
                    return FileVisitResult.CONTINUE;
                } catch (NoSuchFileException e) {
                    // Somebody else deletes the tree at the same time.
                    return FileVisitResult.SKIP_SUBTREE;
                }
            }

            @Override
            public FileVisitResult visitFile(Path file, BasicFileAttributes attributes)
                    throws IOException {
                Files.deleteIfExists(file);
                return FileVisitResult.CONTINUE;
            }

            @Override
            public FileVisitResult visitFileFailed(Path file, IOException failure)
                    throws IOException {
                if (failure instanceof NoSuchFileException) {
                    return FileVisitResult.CONTINUE;
                }
                // A directory whose owner may not read it can be made readable and tried again.
                if (failure instanceof AccessDeniedException
                        && addPermissions(file, PosixFilePermission.OWNER_READ,
                                PosixFilePermission.OWNER_EXECUTE)) {
                    delete(file);
                    return FileVisitResult.CONTINUE;
                }
                throw failure;
            }

            @Override
            public FileVisitResult postVisitDirectory(Path dir, IOException failure)
                    throws IOException {
                Files.deleteIfExists(dir);
                return FileVisitResult.CONTINUE;
            }
        });
    }

    /** Copies one file with its permissions and times, making the directories above the target. */
    public static void copy(Path source, Path target) throws IOException {
        create(target.getParent());
        Files.copy(source, target, StandardCopyOption.REPLACE_EXISTING,
                StandardCopyOption.COPY_ATTRIBUTES);
    }

    /**
     * Moves one file with its permissions, in the place of an older one; a link's file is copied.
     */
    public static void move(Path source, Path target) throws IOException {
        if (Files.isSymbolicLink(source)) {
            copy(source, target);
            return;
        }
        try {
            Files.move(source, target, StandardCopyOption.ATOMIC_MOVE);
        } catch (AtomicMoveNotSupportedException e) {
            Files.move(source, target, StandardCopyOption.REPLACE_EXISTING);
        }
    }

    /** Whether the name of a file is text that leads to it again. */
    public static boolean isNamed(Path file) {
        try {
            return file.equals(file.getFileSystem().getPath(file.toString()));
        } catch (InvalidPathException e) {
            return false;
        }
    }

    /** Writes what is no text in the names below a directory as %XX. */
    public static void nameFiles(Path root) throws IOException {
        Files.walkFileTree(root, new SimpleFileVisitor<Path>() {
            @Override
            public FileVisitResult visitFile(Path file, BasicFileAttributes attributes)
                    throws IOException {
                return name(file);
            }

            @Override
            public FileVisitResult postVisitDirectory(Path dir, IOException failure)
                    throws IOException {
                return dir.equals(root) ? FileVisitResult.CONTINUE : name(dir);
            }

            private FileVisitResult name(Path file) throws IOException {
                if (!isNamed(file.getFileName())) {
                    String text = file.getFileName().toUri().getRawPath();
                    String name = text.substring(text.lastIndexOf('/') + 1);
                    Files.move(file, file.resolveSibling(name));
                }
                return FileVisitResult.CONTINUE;
            }
        });
    }

    /** Puts a symbolic link to the source at the target. */
    public static void link(Path source, Path target) throws IOException {
        create(target.getParent());
        Files.deleteIfExists(target);
        Files.createSymbolicLink(target, source);
    }

    public static void makeExecutable(Path file) throws IOException {
        addPermissions(file, PosixFilePermission.OWNER_EXECUTE, PosixFilePermission.GROUP_EXECUTE,
                PosixFilePermission.OTHERS_EXECUTE);
    }

    /** Whether the path did not have them all before. */
    private static boolean addPermissions(Path path, PosixFilePermission... permissions)
            throws IOException {
        Set<PosixFilePermission> all = Files.getPosixFilePermissions(path);
        boolean added = all.addAll(Arrays.asList(permissions));
        if (added) {
            Files.setPosixFilePermissions(path, all);
        }
        return added;
    }
}
