package fi.vantiro.localgrid;

import java.io.IOException;
import java.nio.charset.StandardCharsets;
import java.nio.file.DirectoryStream;
import java.nio.file.Files;
import java.nio.file.NoSuchFileException;
import java.nio.file.Path;
import java.nio.file.Paths;

/** The directory of one project in the grid's home. */
final class ProjectDirectory {
    private static final String NOBODY = "ended";

    private final Path root;
    private final Path work;
    private final Path results;
    private final Path state;
    /** Holds the id of the process that the project lives in, so that others leave it alone. */
    private final Path owner;

    ProjectDirectory(Path root) {
        this.root = root;
        work = root.resolve("work");
        results = root.resolve("results");
        state = root.resolve("state");
        owner = root.resolve("owner");
    }

    int number() {
        return Integer.parseInt(root.getFileName().toString());
    }

    Path work(int job) {
        return work.resolve("job-" + job);
    }

    /** Where the shell leaves the processor time of a job. */
    Path times(int job) {
        return work.resolve("job-" + job + ".times");
    }

    Path results() {
        return results;
    }

    Path state() {
        return state;
    }

    void markActive() throws IOException {
        writeOwner(Paths.get("/proc/self").toRealPath().getFileName().toString());
    }

    void markEnded() throws IOException {
        if (Files.exists(root)) {
            writeOwner(NOBODY);
        }
    }

    private void writeOwner(String text) throws IOException {
        Files.write(owner, text.getBytes(StandardCharsets.US_ASCII));
    }

    /** Whether the project may still be used; one that is just being made has no owner yet. */
    boolean isActive() throws IOException {
        try {
            String process = new String(Files.readAllBytes(owner), StandardCharsets.US_ASCII);
            return !process.equals(NOBODY) && Files.exists(Paths.get("/proc", process));
        } catch (NoSuchFileException e) {
            return true;
        }
    }

    /** Removes the working directories; how many there were. */
    int deleteWork() throws IOException {
        int removed = 0;
        if (Files.isDirectory(work)) {
            try (DirectoryStream<Path> jobs = Files.newDirectoryStream(work)) {
                for (Path job : jobs) {
                    removed += Files.isDirectory(job) ? 1 : 0;
                }
            }
            Trees.delete(work);
        }
        return removed;
    }

    /** Removes everything of the project; 1 when there were results. */
    int deleteResults() throws IOException {
        int removed = Files.isDirectory(results) ? 1 : 0;
        Trees.delete(root);
        return removed;
    }
}
