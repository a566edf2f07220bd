package fi.vantiro.localgrid.files;

import fi.vantiro.localgrid.base.GridException;
import fi.vantiro.localgrid.base.Status;
import java.io.IOException;
import java.io.InputStream;
import java.io.OutputStream;
import java.nio.ByteBuffer;
import java.nio.channels.FileChannel;
import java.nio.file.Files;
import java.nio.file.InvalidPathException;
import java.nio.file.Path;
import java.util.Collections;
import java.util.List;
import java.util.Map;
import java.util.function.Predicate;
import java.util.zip.ZipEntry;
import java.util.zip.ZipException;
import java.util.zip.ZipFile;
import java.util.zip.ZipOutputStream;

/** Packs and unpacks zip archives. */
public final class Archives {
    private Archives() {}

    /** Packs a job's outputs, but those that cannot be read. */
    public static void pack(Path archive, Outputs outputs) throws IOException {
        ByteBuffer buffer = ByteBuffer.allocate(1 << 16);
        AtomicFile.write(archive, out -> {
            try (ZipOutputStream zip = new ZipOutputStream(out)) {
                for (String name : outputs.names()) {
                    pack(zip, outputs, name, buffer);
                }
            }
        });
    }

    private static void pack(ZipOutputStream zip, Outputs outputs, String name, ByteBuffer buffer)
            throws IOException {
        FileChannel opened;
        try {
            opened = Outputs.open(outputs.path(name));
        } catch (IOException e) {
            outputs.lose(name, e);
            return;
        }
        try (FileChannel file = opened) {
            ZipEntry entry = new ZipEntry(name);
            entry.setExtra(FileMode.field(FileMode.of(outputs.path(name))));
            zip.putNextEntry(entry);
            Outputs.copy(file, zip, buffer);
        }
    }

    /** Packs the contents of several archives, each below a directory of its own. */
    public static void merge(Path archive, Map<String, Path> parts) throws IOException {
        AtomicFile.write(archive, out -> {
            try (ZipOutputStream zip = new ZipOutputStream(out)) {
                for (Map.Entry<String, Path> part : parts.entrySet()) {
                    append(zip, part.getKey(), part.getValue());
                }
            }
        });
    }

    private static void append(ZipOutputStream zip, String directory, Path archive)
            throws IOException {
        try (ZipFile source = new ZipFile(archive.toFile())) {
            for (ZipEntry entry : Collections.list(source.entries())) {
                ZipEntry copy = new ZipEntry(directory + "/" + entry.getName());
                copy.setExtra(entry.getExtra());
                zip.putNextEntry(copy);
                try (InputStream content = source.getInputStream(entry)) {
                    copy(content, zip);
                }
            }
        }
    }

    /** Unpacks the entries that are wanted; the number of files. Never writes elsewhere. */
    public static int unpack(Path archive, Path directory, Predicate<String> wanted)
            throws GridException, IOException {
        if (!Files.isReadable(archive)) {
            throw new GridException(Status.NOT_FOUND, "cannot read archive " + archive);
        }
        try (ZipFile zip = new ZipFile(archive.toFile())) {
            List<? extends ZipEntry> entries = Collections.list(zip.entries());
            entries.removeIf(entry -> !wanted.test(entry.getName()));
            for (ZipEntry entry : entries) {
                target(directory, entry, archive);
            }
            Trees.create(directory);
            int files = 0;
            for (ZipEntry entry : entries) {
                files += unpack(zip, entry, directory, archive);
            }
            return files;
        } catch (ZipException | IllegalArgumentException e) {
            throw new GridException(
                    Status.BAD_ARCHIVE, "damaged archive " + archive + ": " + e.getMessage());
        }
    }

    private static int unpack(ZipFile zip, ZipEntry entry, Path directory, Path archive)
            throws GridException, IOException {
        Path target = target(directory, entry, archive);
        Path existing = target;
        while (!Files.exists(existing) || existing.equals(target) && !entry.isDirectory()) {
            existing = existing.getParent();
        }
        if (!existing.toRealPath().startsWith(directory.toRealPath())) {
            throw unsafe(entry, archive);
        }
        if (entry.isDirectory()) {
            Trees.create(target);
            return 0;
        }
        unpack(zip, entry, target);
        return 1;
    }

    /** Writes an entry with its permissions; several threads may write the same one. */
    public static void unpack(ZipFile zip, ZipEntry entry, Path target) throws IOException {
        AtomicFile.write(target, out -> {
            try (InputStream content = zip.getInputStream(entry)) {
                copy(content, out);
            }
        }, part -> FileMode.restore(entry, part));
    }

    /** Copies a stream to its end. */
    public static void copy(InputStream in, OutputStream out) throws IOException {
        byte[] buffer = new byte[1 << 16];
        for (int n = in.read(buffer); n >= 0; n = in.read(buffer)) {
            out.write(buffer, 0, n);
        }
    }

    private static Path target(Path directory, ZipEntry entry, Path archive) throws GridException {
        try {
            Path root = directory.toAbsolutePath().normalize();
            Path target = root.resolve(entry.getName()).normalize();
            if (target.startsWith(root) && (entry.isDirectory() || !target.equals(root))) {
                return target;
            }
        } catch (InvalidPathException e) {
            throw unsafe(entry, archive);
        }
        throw unsafe(entry, archive);
    }

    private static GridException unsafe(ZipEntry entry, Path archive) {
        return new GridException(Status.BAD_ARCHIVE,
                "entry " + entry.getName() + " of " + archive + " leaves the directory");
    }
}
