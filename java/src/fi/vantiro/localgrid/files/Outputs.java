package fi.vantiro.localgrid.files;

import java.io.IOException;
import java.io.OutputStream;
import java.nio.ByteBuffer;
import java.nio.channels.FileChannel;
import java.nio.file.AccessDeniedException;
import java.nio.file.FileSystemException;
import java.nio.file.Files;
import java.nio.file.LinkOption;
import java.nio.file.Path;
import java.nio.file.StandardOpenOption;
import java.nio.file.attribute.PosixFilePermission;
import java.util.ArrayList;
import java.util.Collection;
import java.util.List;
import java.util.Set;
import java.util.TreeSet;

/** Files that a job left below a directory, by relative names, and what cannot be kept of them. */
public final class Outputs {
    private final Path root;
    private final TreeSet<String> names;
    private final Failures lost;

    public Outputs(Path root, Collection<String> names, Failures lost) {
        this.root = root;
        this.names = new TreeSet<>(names);
        this.lost = lost;
    }

    /** The names in order, as they are now. */
    public List<String> names() {
        return new ArrayList<>(names);
    }

    public boolean contains(String name) {
        return names.contains(name);
    }

    public Path path(String name) {
        return root.resolve(name);
    }

    /** Gives an output up. */
    public void lose(String name, IOException why) {
        names.remove(name);
        lost.add(path(name), why);
    }

    /** What could not be kept. */
    public Failures lost() {
        return lost;
    }

    /**
     * Opens a file that a job made, for reading, unless it is something that one may have to wait
     * for. A link is followed; no permission of the owner's own keeps the content from him.
     */
    public static FileChannel open(Path file) throws IOException {
        boolean isLink = Files.isSymbolicLink(file);
        Path real = isLink ? file.toRealPath() : file;
        checkRegular(real);
        try {
            return openToRead(real);
        } catch (AccessDeniedException e) {
            if (isLink) {
                throw e;
            }
        }
        Set<PosixFilePermission> permissions = Files.getPosixFilePermissions(real);
        Trees.addPermissions(real, PosixFilePermission.OWNER_READ);
        try {
            return openToRead(real);
        } finally {
            Files.setPosixFilePermissions(real, permissions);
        }
    }

    private static FileChannel openToRead(Path file) throws IOException {
        return FileChannel.open(file, StandardOpenOption.READ, LinkOption.NOFOLLOW_LINKS);
    }

    private static void checkRegular(Path file) throws IOException {
        if (!Files.readAttributes(file, "isRegularFile", LinkOption.NOFOLLOW_LINKS)
                        .get("isRegularFile")
                        .equals(true)) {
            throw new FileSystemException(file.toString(), null, "it is not a regular file");
        }
    }

    /** Copies a file as it is now: one that grows, or seems to, has an end. */
    static void copy(FileChannel file, OutputStream out, ByteBuffer buffer) throws IOException {
        long left = file.size();
        while (left > 0) {
            buffer.clear().limit((int) Math.min(buffer.capacity(), left));
            int count = file.read(buffer);
            if (count < 0) {
                return;
            }
            out.write(buffer.array(), 0, count);
            left -= count;
        }
    }

    /** Puts an output elsewhere with its permissions and time; it need not stay where it is. */
    public void put(String name, Path target, boolean stays) throws IOException {
        Path file = path(name);
        Trees.create(target.getParent());
        if (!stays && !Files.isSymbolicLink(file)) {
            try {
                AtomicFile.moveInto(file, target);
                return;
            } catch (FileSystemException e) {
                // On another file system, or in somebody else's directory: it is copied.
            }
        }
        AtomicFile.copy(file, target);
    }
}
