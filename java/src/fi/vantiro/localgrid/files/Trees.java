package fi.vantiro.localgrid.files;

import java.io.IOException;
import java.nio.file.AccessDeniedException;
import java.nio.file.DirectoryIteratorException;
import java.nio.file.DirectoryStream;
import java.nio.file.Files;
import java.nio.file.InvalidPathException;
import java.nio.file.LinkOption;
import java.nio.file.Path;
import java.nio.file.SecureDirectoryStream;
import java.nio.file.attribute.FileAttribute;
import java.nio.file.attribute.PosixFileAttributes;
import java.nio.file.attribute.PosixFilePermission;
import java.nio.file.attribute.PosixFilePermissions;
import java.util.ArrayList;
import java.util.Arrays;
import java.util.EnumSet;
import java.util.List;
import java.util.Set;

/** Operations on files and directory trees. */
public final class Trees {
    private static final FileAttribute<?> PRIVATE =
            PosixFilePermissions.asFileAttribute(PosixFilePermissions.fromString("rwx------"));

    static final Set<PosixFilePermission> ACCESS = PosixFilePermissions.fromString("rwx------");

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

    /** A handle of a directory, which is made accessible to its owner. */
    static SecureDirectoryStream<Path> open(Path directory) throws IOException {
        try {
            return secure(directory);
        } catch (AccessDeniedException e) {
            giveAccess(directory);
            return secure(directory);
        }
    }

    private static SecureDirectoryStream<Path> secure(Path directory) throws IOException {
        return (SecureDirectoryStream<Path>) Files.newDirectoryStream(directory);
    }

    /** Lets the owner of a directory, if that is who asks, list it, enter it and change it. */
    public static void giveAccess(Path directory) {
        try {
            PosixFileAttributes attributes = Files.readAttributes(
                    directory, PosixFileAttributes.class, LinkOption.NOFOLLOW_LINKS);
            Set<PosixFilePermission> all = EnumSet.copyOf(ACCESS);
            if (attributes.isDirectory() && !attributes.permissions().containsAll(all)) {
                all.addAll(attributes.permissions());
                Files.setPosixFilePermissions(directory, all);
            }
        } catch (IOException e) {
            // What is done next tells whether it mattered.
            return;
        }
    }

    /** Deletes a tree if it is there, links in it, not what they lead to; what could not go. */
    public static Failures delete(Path tree) throws IOException {
        return Deletion.of(tree);
    }

    /** Whether the name of a file is text that leads to it again. */
    public static boolean isNamed(Path file) {
        try {
            return file.equals(file.getFileSystem().getPath(file.toString()));
        } catch (InvalidPathException e) {
            return false;
        }
    }

    /** Renames a file whose name is no text: %XX stands for each byte that is none. */
    public static Path giveName(Path file) throws IOException {
        String text = file.getFileName().toUri().getRawPath().replaceAll("/$", "");
        String name = text.substring(text.lastIndexOf('/') + 1);
        Path named = file.resolveSibling(name);
        for (int i = 1; Files.exists(named, LinkOption.NOFOLLOW_LINKS); i++) {
            named = file.resolveSibling(name + "." + i);
        }
        return Files.move(file, named);
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

    static void addPermissions(Path path, PosixFilePermission... permissions) throws IOException {
        Set<PosixFilePermission> all = Files.getPosixFilePermissions(path);
        if (all.addAll(Arrays.asList(permissions))) {
            Files.setPosixFilePermissions(path, all);
        }
    }
}
