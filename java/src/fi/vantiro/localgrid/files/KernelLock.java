package fi.vantiro.localgrid.files;

import fi.vantiro.localgrid.base.GridException;
import fi.vantiro.localgrid.base.Status;
import java.io.Closeable;
import java.io.IOException;
import java.nio.channels.ClosedByInterruptException;
import java.nio.channels.FileChannel;
import java.nio.file.Files;
import java.nio.file.LinkOption;
import java.nio.file.Path;
import java.nio.file.StandardOpenOption;
import java.util.HashSet;
import java.util.Map;
import java.util.Set;
import java.util.concurrent.ConcurrentHashMap;

/**
 * A lock on a file that the kernel holds for this process and drops when it dies. Programs in other
 * containers, and on other machines of a shared file system, see it too.
 */
public final class KernelLock implements Closeable {
    /**
     * The files locked here. Closing any descriptor of a file drops the locks that the process has
     * on it, so these are not opened a second time.
     */
    private static final Set<Object> HELD = new HashSet<>();
    private static final Map<Path, Object> MONITORS = new ConcurrentHashMap<>();

    private final Path file;
    private final Object key;
    private final FileChannel channel;

    /** Work to be done while a lock is held. */
    @FunctionalInterface
    public interface Work<T> {
        T run() throws GridException, IOException;
    }

    private KernelLock(Path file, Object key, FileChannel channel) {
        this.file = file;
        this.key = key;
        this.channel = channel;
    }

    /**
     * Locks the first bytes of a file, which is made; null when somebody has locked one of them.
     */
    public static KernelLock tryLock(Path file, int bytes) throws GridException, IOException {
        synchronized (HELD) {
            if (Files.exists(file, LinkOption.NOFOLLOW_LINKS) && HELD.contains(key(file))) {
                return null;
            }
            FileChannel channel = open(file);
            KernelLock lock = new KernelLock(file, key(file), channel);
            boolean locked = false;
            try {
                locked = channel.tryLock(0, bytes, false) != null;
            } catch (IOException e) {
                throw refused(file, e);
            } finally {
                if (!locked) {
                    channel.close();
                }
            }
            if (locked) {
                HELD.add(lock.key);
            }
            return locked ? lock : null;
        }
    }

    /** Whether somebody has a lock on the first bytes of a file. */
    public static boolean isHeld(Path file, int bytes) throws GridException, IOException {
        try (KernelLock lock = Files.exists(file) ? tryLock(file, bytes) : null) {
            return lock == null && Files.exists(file);
        }
    }

    /** Runs the work while no other thread or program runs work under the same file. */
    public static <T> T exclusively(Path file, Work<T> work) throws GridException, IOException {
        Path real = file.getParent().toRealPath().resolve(file.getFileName());
        synchronized (MONITORS.computeIfAbsent(real, any -> new Object())) {
            try (FileChannel channel = open(real)) {
                try {
                    channel.lock();
                } catch (IOException e) {
                    throw refused(real, e);
                }
                return work.run();
            }
        }
    }

    private static FileChannel open(Path file) throws IOException {
        return FileChannel.open(file, StandardOpenOption.CREATE, StandardOpenOption.WRITE);
    }

    private static GridException refused(Path file, IOException e) {
        String why = e instanceof ClosedByInterruptException ? "the thread was interrupted"
                                                             : GridException.text(e);
        return new GridException(Status.IO_ERROR,
                "cannot lock " + file + ": " + why
                        + "; it has to be on a file system that locks files");
    }

    private static Object key(Path file) throws IOException {
        return Files.getAttribute(file, "fileKey");
    }

    public Path file() {
        return file;
    }

    @Override
    public void close() throws IOException {
        synchronized (HELD) {
            HELD.remove(key);
            channel.close();
        }
    }
}
