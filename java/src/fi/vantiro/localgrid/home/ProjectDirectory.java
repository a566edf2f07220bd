package fi.vantiro.localgrid.home;

import fi.vantiro.localgrid.base.GridException;
import fi.vantiro.localgrid.files.Trees;
import fi.vantiro.localgrid.process.JobFile;
import java.io.IOException;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.nio.file.LinkOption;
import java.nio.file.NoSuchFileException;
import java.nio.file.Path;

/** The directory of one project in the grid's home. */
public final class ProjectDirectory {
    static final String OWNER = "owner";

    private final Trash trash;
    private volatile Path root;

    ProjectDirectory(Path root, Trash trash) {
        this.root = root;
        this.trash = trash;
    }

    /** Makes the directory of a project that lives in the program of that owner's file. */
    static ProjectDirectory create(Path root, Trash trash, String owner) throws IOException {
        ProjectDirectory directory = new ProjectDirectory(root, trash);
        boolean whole = false;
        try {
            Trees.createPrivate(root);
            Files.write(directory.ownerFile(), owner.getBytes(StandardCharsets.US_ASCII));
            whole = true;
            return directory;
        } finally {
            if (!whole) {
                Trees.delete(root);
            }
        }
    }

    public int number() {
        return Integer.parseInt(root.getFileName().toString());
    }

    public boolean exists() {
        return Files.exists(root, LinkOption.NOFOLLOW_LINKS);
    }

    private Path work() {
        return root.resolve("work");
    }

    public Path work(int job) {
        return work().resolve("job-" + job);
    }

    /** The file that tells its keeper about a job. */
    public JobFile job(int job) {
        return new JobFile(work().resolve("job-" + job + ".job"));
    }

    public Path results() {
        return root.resolve("results");
    }

    public Path state() {
        return root.resolve("state");
    }

    private Path ownerFile() {
        return root.resolve(OWNER);
    }

    private Path endedFile() {
        return root.resolve("ended");
    }

    /** The name of the owner's file, "" when the project was never made whole. */
    String owner() throws IOException {
        try {
            return new String(Files.readAllBytes(ownerFile()), StandardCharsets.US_ASCII);
        } catch (NoSuchFileException e) {
            return "";
        }
    }

    public void markEnded() throws IOException {
        if (exists()) {
            Files.write(endedFile(), new byte[0]);
        }
    }

    boolean isEnded() {
        return Files.exists(endedFile());
    }

    void moveTo(Path target) throws IOException {
        if (!target.equals(root)) {
            Files.move(root, target);
            root = target;
        }
    }

    /** Has the directory take this project's results, and no other one's. */
    public void claim(Path directory) throws GridException, IOException {
        Path owners = root.resolveSibling("../owners").normalize();
        ResultsClaim.make(directory, owners.resolve(owner()), root);
    }

    /** Moves the working directories away; how many there were. */
    int discardWork() throws IOException {
        int count = 0;
        if (Files.isDirectory(work(), LinkOption.NOFOLLOW_LINKS)) {
            Trees.giveAccess(work());
            for (Path job : Trees.list(work(), "*")) {
                count += Files.isDirectory(job, LinkOption.NOFOLLOW_LINKS) ? 1 : 0;
            }
            trash.take(work());
        }
        return count;
    }

    /** Moves everything away; the number of working directories, and 1 when there were results. */
    int discard() throws IOException {
        boolean results = Files.isDirectory(results()) || Files.isDirectory(state());
        int count = discardWork() + (results ? 1 : 0);
        trash.take(root);
        return count;
    }

    /** Deletes what a job left in its working directory. */
    public void deleteWork(int job) throws IOException {
        trash.delete(work(job));
    }

    /** Deletes everything of the project. */
    public void delete() throws IOException {
        trash.delete(root);
    }
}
