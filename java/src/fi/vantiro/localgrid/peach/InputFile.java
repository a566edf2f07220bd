package fi.vantiro.localgrid.peach;

import fi.vantiro.localgrid.base.Arguments;
import fi.vantiro.localgrid.base.GridException;
import fi.vantiro.localgrid.base.Status;
import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.nio.file.attribute.PosixFilePermission;
import java.nio.file.attribute.PosixFilePermissions;
import java.util.Set;

/** A file of this machine and the name under which jobs find it. */
public final class InputFile {
    final Path source;
    final String target;
    private final Set<PosixFilePermission> permissions;

    private InputFile(Path source, String target, Set<PosixFilePermission> permissions) {
        this.source = source;
        this.target = Arguments.inside(target);
        this.permissions = permissions;
    }

    /** A file that keeps its name, below a directory that may be empty. */
    static InputFile in(String directory, String file) {
        String name = name(file);
        String target = directory.isEmpty() ? name : directory + "/" + name;
        return new InputFile(Arguments.path(file), target, null);
    }

    /** A file with another name and an octal mode; empty ones leave both as they are. */
    public static InputFile named(String file, String target, String mode) {
        return new InputFile(Arguments.path(file), target.isEmpty() ? name(file) : target,
                mode.isEmpty() ? null : permissions(mode));
    }

    private static String name(String file) {
        Path name = Arguments.path(file).getFileName();
        return Arguments.required(name, "the name of file " + file).toString();
    }

    private static Set<PosixFilePermission> permissions(String mode) {
        if (!mode.matches("0?[0-7]{3}")) {
            throw Arguments.bad("not an octal mode such as 755", mode);
        }
        int bits = Integer.parseInt(mode, 8);
        StringBuilder text = new StringBuilder();
        for (int i = 0; i < 9; i++) {
            boolean set = (bits >> (8 - i) & 1) == 1;
            text.append(set ? "rwx".charAt(i % 3) : '-');
        }
        return PosixFilePermissions.fromString(text.toString());
    }

    /** The permissions of the file as jobs find it. */
    Set<PosixFilePermission> permissions() throws IOException {
        return permissions == null ? Files.getPosixFilePermissions(source) : permissions;
    }

    void checkReadable() throws GridException {
        if (!Files.isRegularFile(source) || !Files.isReadable(source)) {
            throw new GridException(Status.NOT_FOUND, "cannot read file " + source);
        }
    }
}
