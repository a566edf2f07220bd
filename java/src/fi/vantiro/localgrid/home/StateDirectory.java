package fi.vantiro.localgrid.home;

import fi.vantiro.localgrid.base.GridException;
import fi.vantiro.localgrid.base.Status;
import fi.vantiro.localgrid.files.AtomicFile;
import fi.vantiro.localgrid.files.KernelLock;
import fi.vantiro.localgrid.files.Outputs;
import fi.vantiro.localgrid.files.Trees;
import java.io.Closeable;
import java.io.IOException;
import java.nio.ByteBuffer;
import java.nio.channels.FileChannel;
import java.nio.charset.StandardCharsets;
import java.nio.file.DirectoryNotEmptyException;
import java.nio.file.FileAlreadyExistsException;
import java.nio.file.Files;
import java.nio.file.LinkOption;
import java.nio.file.Path;
import java.nio.file.StandardOpenOption;
import java.nio.file.attribute.BasicFileAttributes;
import java.util.Arrays;
import java.util.Collection;
import java.util.Collections;
import java.util.LinkedHashSet;
import java.util.Set;
import java.util.TreeSet;

/**
 * The state directory of a run. What the grid writes there is in a record, from the moment before
 * it is written; all else is the caller's, and neither removed nor overwritten. One run has it at a
 * time.
 */
public final class StateDirectory implements Closeable {
    private static final String LOCK = ".vantiro.lock";
    private static final String RECORD = ".vantiro.written";
    private static final String END = "\0";

    private final Path root;
    private final Set<String> recorded = new LinkedHashSet<>();
    private KernelLock lock;
    private FileChannel record;
    /** What the record was when the run ended; a later run replaces it. */
    private Object last;

    public StateDirectory(Path root) {
        this.root = root;
    }

    public Path root() {
        return root;
    }

    public Path outputs(int job) {
        return root.resolve("job-" + job);
    }

    /** Takes the directory for a run, whose outputs of these names find their places free. */
    public void open(int jobs, Collection<String> names) throws GridException, IOException {
        Trees.create(root);
        lock = KernelLock.tryLock(root.resolve(LOCK), 1);
        if (lock == null) {
            throw new GridException(Status.WRONG_STATE,
                    "another run works in the state directory " + root
                            + "; a run at the same time needs another one");
        }
        if (Files.exists(root.resolve(RECORD))) {
            String text =
                    new String(Files.readAllBytes(root.resolve(RECORD)), StandardCharsets.UTF_8);
            // What follows the last end was not written whole, nor was its file.
            String whole = text.substring(0, text.lastIndexOf(END) + 1);
            recorded.addAll(Arrays.asList(whole.split(END)));
        }
        for (Path present : Trees.list(root, "job-*")) {
            String number = present.getFileName().toString().substring("job-".length());
            if (number.matches("[1-9]\\d{0,8}") && Integer.parseInt(number) <= jobs) {
                for (String name : names) {
                    checkFree("job-" + number + "/" + name);
                }
            }
        }
        startRecord();
    }

    private void startRecord() throws IOException {
        AtomicFile.write(root.resolve(RECORD),
                out -> out.write(text(recorded).getBytes(StandardCharsets.UTF_8)));
        if (record != null) {
            record.close();
        }
        record = FileChannel.open(root.resolve(RECORD), StandardOpenOption.APPEND);
    }

    /** Removes the outputs of the last run, and the directories that are empty then. */
    public void removeOutputs() throws IOException {
        Set<Path> directories = new TreeSet<>(Collections.reverseOrder());
        for (String name : new TreeSet<>(recorded)) {
            Path file = root.resolve(name).normalize();
            if (name.startsWith("job-") && isBelow(file)) {
                recorded.remove(name);
                if (Files.isRegularFile(file, LinkOption.NOFOLLOW_LINKS)) {
                    Files.delete(file);
                }
                for (Path parent = file.getParent(); !parent.equals(root);
                        parent = parent.getParent()) {
                    directories.add(parent);
                }
            }
        }
        for (Path directory : directories) {
            try {
                Files.deleteIfExists(directory);
            } catch (DirectoryNotEmptyException e) {
                // What is left there is the caller's.
                continue;
            }
        }
        startRecord();
    }

    /** Whether only directories, not links, lead from the root to a file. */
    private boolean isBelow(Path file) {
        Path directory = file.getParent();
        while (directory.startsWith(root) && !directory.equals(root)
                && Files.isDirectory(directory, LinkOption.NOFOLLOW_LINKS)) {
            directory = directory.getParent();
        }
        return directory.equals(root);
    }

    private void checkFree(String name) throws GridException {
        Path file = root.resolve(name);
        boolean isOwn = recorded.contains(name);
        for (Path path = file; !path.equals(root); path = path.getParent()) {
            boolean isThere = Files.exists(path, LinkOption.NOFOLLOW_LINKS);
            if (isThere && (path.equals(file) ? !isOwn : !isDirectory(path))) {
                throw new GridException(Status.WRONG_STATE,
                        path + " is in the way of the run, and not its own to replace; move it, or "
                                + "name another state directory");
            }
        }
    }

    private static boolean isDirectory(Path path) {
        return Files.isDirectory(path, LinkOption.NOFOLLOW_LINKS);
    }

    /** The path of a file that the run is about to write. */
    public Path claim(String name) throws GridException, IOException {
        checkFree(name);
        if (recorded.add(name)) {
            append(Collections.singleton(name));
        }
        Trees.create(root.resolve(name).getParent());
        return root.resolve(name);
    }

    /** Removes a file that an earlier run wrote. */
    public void remove(String name) throws IOException {
        if (recorded.contains(name)) {
            Files.deleteIfExists(root.resolve(name));
        }
    }

    /** Takes the outputs of a job over, from a directory where they stay or not. */
    public void take(int job, Outputs outputs, boolean stay) throws GridException, IOException {
        Set<String> files = new LinkedHashSet<>();
        boolean isNew = isMade(outputs(job));
        for (String name : outputs.names()) {
            String file = "job-" + job + "/" + name;
            if (!isNew) {
                checkFree(file);
            }
            files.add(file);
        }
        append(files);
        for (String name : outputs.names()) {
            try {
                outputs.put(name, outputs(job).resolve(name), stay);
            } catch (IOException e) {
                outputs.lose(name, e);
            }
        }
    }

    private static boolean isMade(Path directory) throws IOException {
        try {
            Files.createDirectory(directory);
            return true;
        } catch (FileAlreadyExistsException e) {
            return false;
        }
    }

    private synchronized void append(Collection<String> names) throws IOException {
        long size = record.size();
        ByteBuffer bytes = ByteBuffer.wrap(text(names).getBytes(StandardCharsets.UTF_8));
        try {
            while (bytes.hasRemaining()) {
                record.write(bytes);
            }
        } catch (IOException e) {
            record.truncate(size);
            throw e;
        }
    }

    private static String text(Collection<String> names) {
        return names.isEmpty() ? "" : String.join(END, names) + END;
    }

    /** Whether the files there are those of the run. */
    public synchronized boolean isCurrent() throws IOException {
        return last == null || last.equals(stamp());
    }

    public void checkCurrent() throws GridException, IOException {
        if (!isCurrent()) {
            throw new GridException(Status.WRONG_STATE,
                    "the files of this run in " + root
                            + " were removed, or replaced by a later run");
        }
    }

    private Object stamp() throws IOException {
        Path file = root.resolve(RECORD);
        if (!Files.exists(file)) {
            return "none";
        }
        BasicFileAttributes now = Files.readAttributes(file, BasicFileAttributes.class);
        return now.fileKey() + " " + now.lastModifiedTime() + " " + now.size();
    }

    /** Lets later runs have the directory. */
    @Override
    public synchronized void close() throws IOException {
        if (lock == null) {
            return;
        }
        try {
            if (record != null) {
                record.close();
                last = stamp();
            }
        } finally {
            lock.close();
            lock = null;
        }
    }
}
