package fi.vantiro.localgrid.files;

import java.io.BufferedOutputStream;
import java.io.FilterOutputStream;
import java.io.IOException;
import java.io.OutputStream;
import java.nio.ByteBuffer;
import java.nio.channels.FileChannel;
import java.nio.file.FileSystemException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.nio.file.StandardCopyOption;
import java.nio.file.StandardOpenOption;
import java.util.concurrent.ThreadLocalRandom;

/** Writes files that take the place of older ones only when they are whole. */
public final class AtomicFile {
    /** How the names of files end that are being written. */
    public static final String PART = ".part";

    private AtomicFile() {}

    /** Fills a file. */
    @FunctionalInterface
    public interface Writing {
        void to(OutputStream out) throws IOException;
    }

    /** Does what is left to do to a file when it has its content. */
    @FunctionalInterface
    interface Finish {
        void of(Path file) throws IOException;
    }

    public static void write(Path target, Writing writing) throws IOException {
        write(target, writing, file -> {});
    }

    /** Copies a file with its permissions and time. */
    public static void copy(Path source, Path target) throws IOException {
        try (FileChannel file = Outputs.open(source)) {
            write(target, out -> Outputs.copy(file, out, ByteBuffer.allocate(1 << 16)), part -> {
                Files.setPosixFilePermissions(part, Files.getPosixFilePermissions(source));
                Files.setLastModifiedTime(part, Files.getLastModifiedTime(source));
            });
        }
    }

    static void write(Path target, Writing writing, Finish finish) throws IOException {
        Trees.create(target.getParent());
        Path part = part(target);
        try {
            try (OutputStream out = new BufferedOutputStream(open(part, target))) {
                writing.to(out);
            }
            finish.of(part);
            moveInto(part, target);
        } finally {
            Files.deleteIfExists(part);
        }
    }

    /** Moves a file in the place of an older one. */
    public static void moveInto(Path file, Path target) throws IOException {
        try {
            // Otherwise Java removes the old file first, and there is none for a moment.
            Files.move(file, target, StandardCopyOption.ATOMIC_MOVE);
        } catch (FileSystemException e) {
            throw Failures.of(target, e);
        }
    }

    /** Fails when no file can be written there. */
    public static void check(Path target) throws IOException {
        if (Files.isDirectory(target)) {
            throw new FileSystemException(target.toString(), null, "a directory has this name");
        }
        Trees.create(target.getParent());
        Path part = part(target);
        try {
            open(part, target).close();
        } finally {
            Files.deleteIfExists(part);
        }
    }

    /** A name that is no longer than the system allows, however long the target's is. */
    private static Path part(Path target) {
        String random = Long.toHexString(ThreadLocalRandom.current().nextLong());
        return target.resolveSibling("." + random + PART);
    }

    /** Failures name the file that is asked for. */
    private static OutputStream open(Path part, Path target) throws IOException {
        OutputStream file;
        try {
            file = Files.newOutputStream(
                    part, StandardOpenOption.CREATE_NEW, StandardOpenOption.WRITE);
        } catch (FileSystemException e) {
            throw Failures.of(target, e);
        }
        return new FilterOutputStream(file) {
            @Override
            public void write(byte[] bytes, int start, int length) throws IOException {
                try {
                    out.write(bytes, start, length);
                } catch (IOException e) {
                    throw Failures.of(target, e);
                }
            }
        };
    }
}
