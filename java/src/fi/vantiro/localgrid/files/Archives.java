package fi.vantiro.localgrid.files;

import fi.vantiro.localgrid.base.GridException;
import fi.vantiro.localgrid.base.Status;
import java.io.BufferedOutputStream;
import java.io.IOException;
import java.io.InputStream;
import java.nio.file.Files;
import java.nio.file.InvalidPathException;
import java.nio.file.Path;
import java.nio.file.StandardCopyOption;
import java.util.Collection;
import java.util.Collections;
import java.util.List;
import java.util.Map;
import java.util.concurrent.ThreadLocalRandom;
import java.util.function.Predicate;
import java.util.zip.ZipEntry;
import java.util.zip.ZipException;
import java.util.zip.ZipFile;
import java.util.zip.ZipOutputStream;

/** Packs and unpacks zip archives. */
public final class Archives {
    private Archives() {}

    /** Fills a file that takes the place of an old one only when it is whole. */
    @FunctionalInterface
    public interface Writing {
        void to(Path file) throws IOException;
    }

    public static void replace(Path target, Writing writing) throws IOException {
        Trees.create(target.getParent());
        String random = Long.toHexString(ThreadLocalRandom.current().nextLong());
        Path part = target.resolveSibling(target.getFileName() + "." + random + ".part");
        try {
            writing.to(part);
            // Otherwise Java removes the old file first, and there is none for a moment.
            Files.move(part, target, StandardCopyOption.ATOMIC_MOVE);
        } finally {
            Files.deleteIfExists(part);
        }
    }

    /** Every number in an archive is written byte by byte. */
    private static ZipOutputStream writer(Path file) throws IOException {
        return new ZipOutputStream(new BufferedOutputStream(Files.newOutputStream(file)));
    }

    /** Packs the named files below the root. */
    public static void pack(Path archive, Path root, Collection<String> names) throws IOException {
        replace(archive, part -> {
            try (ZipOutputStream zip = writer(part)) {
                for (String name : names) {
                    ZipEntry entry = new ZipEntry(name);
                    FileMode.write(root.resolve(name), entry);
                    zip.putNextEntry(entry);
                    Files.copy(root.resolve(name), zip);
                }
            }
        });
    }

    /** Packs the contents of several archives, each below a directory of its own. */
    public static void merge(Path archive, Map<String, Path> parts) throws IOException {
        replace(archive, file -> {
            try (ZipOutputStream zip = writer(file)) {
                for (Map.Entry<String, Path> part : parts.entrySet()) {
                    append(zip, part.getKey(), part.getValue());
                }
            }
        });
    }

    private static void append(ZipOutputStream zip, String directory, Path archive)
            throws IOException {
        byte[] buffer = new byte[1 << 13];
        try (ZipFile source = new ZipFile(archive.toFile())) {
            for (ZipEntry entry : Collections.list(source.entries())) {
                ZipEntry copy = new ZipEntry(directory + "/" + entry.getName());
                copy.setExtra(entry.getExtra());
                zip.putNextEntry(copy);
                try (InputStream content = source.getInputStream(entry)) {
                    for (int n = content.read(buffer); n >= 0; n = content.read(buffer)) {
                        zip.write(buffer, 0, n);
                    }
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
        Trees.create(target.getParent());
        try (InputStream content = zip.getInputStream(entry)) {
            Files.copy(content, target, StandardCopyOption.REPLACE_EXISTING);
        }
        FileMode.restore(entry, target);
        return 1;
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
