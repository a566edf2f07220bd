package fi.vantiro.localgrid.peach;

import fi.vantiro.localgrid.base.Arguments;
import fi.vantiro.localgrid.base.GridException;
import fi.vantiro.localgrid.base.Status;
import fi.vantiro.localgrid.bundle.BundleArchive;
import java.nio.file.Files;
import java.nio.file.Path;

/** A file of this machine and the name under which jobs find it. */
public final class InputFile {
    private static final int AS_IT_IS = -1;

    final Path source;
    final String target;
    /** The permissions that jobs find, or those of the file when negative. */
    private final int mode;

    private InputFile(Path source, String target, int mode) {
        this.source = source;
        this.target = Arguments.inside(target);
        this.mode = mode;
    }

    /** A file that keeps its name, below a directory that may be empty. */
    static InputFile in(String directory, String file) {
        String name = name(file);
        String target = directory.isEmpty() ? name : directory + "/" + name;
        return new InputFile(Arguments.path(file), target, AS_IT_IS);
    }

    /** A file with another name and an octal mode; empty ones leave both as they are. */
    public static InputFile named(String file, String target, String mode) {
        return new InputFile(Arguments.path(file), target.isEmpty() ? name(file) : target,
                mode.isEmpty() ? AS_IT_IS : permissions(mode));
    }

    private static String name(String file) {
        Path name = Arguments.path(file).getFileName();
        return Arguments.required(name, "the name of file " + file).toString();
    }

    private static int permissions(String mode) {
        if (!mode.matches("0?[0-7]{3}")) {
            throw Arguments.bad("not an octal mode such as 755", mode);
        }
        return Integer.parseInt(mode, 8);
    }

    /** The file as jobs find it. */
    BundleArchive.Content content() {
        return BundleArchive.content(source, mode);
    }

    void checkReadable() throws GridException {
        if (!Files.isRegularFile(source) || !Files.isReadable(source)) {
            throw new GridException(Status.NOT_FOUND, "cannot read file " + source);
        }
    }
}
