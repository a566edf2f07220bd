package fi.vantiro.localgrid;

import java.io.IOException;
import java.nio.file.DirectoryStream;
import java.nio.file.FileAlreadyExistsException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.List;

/** The grid's directory on disk; several processes may share it. */
final class GridHome {
    private final Path root;
    private int lastNumber;

    GridHome(Path root) {
        this.root = root;
    }

    boolean isWritable() {
        try {
            return Files.isWritable(Files.createDirectories(root));
        } catch (IOException e) {
            return false;
        }
    }

    BundleStore bundles() {
        return new BundleStore(root.resolve("bundles"));
    }

    /** A directory for a new project, whose number no other project here has. */
    synchronized ProjectDirectory newProject() throws IOException {
        Path projects = Files.createDirectories(root.resolve("projects"));
        for (ProjectDirectory known : projects()) {
            lastNumber = Math.max(lastNumber, known.number());
        }
        while (true) {
            lastNumber++;
            try {
                Path path = Files.createDirectory(projects.resolve(String.valueOf(lastNumber)));
                ProjectDirectory directory = new ProjectDirectory(path);
                directory.markActive();
                return directory;
            } catch (FileAlreadyExistsException e) {
                // Another process was faster: the next number may be free.
                continue;
            }
        }
    }

    /** Removes what projects that are no longer active left; the number of directories removed. */
    int cleanup(boolean results) throws IOException {
        int removed = 0;
        for (ProjectDirectory project : projects()) {
            if (!project.isActive()) {
                removed += project.deleteWork();
                removed += results ? project.deleteResults() : 0;
            }
        }
        return removed;
    }

    private List<ProjectDirectory> projects() throws IOException {
        List<ProjectDirectory> found = new ArrayList<>();
        Path projects = root.resolve("projects");
        if (Files.isDirectory(projects)) {
            try (DirectoryStream<Path> paths = Files.newDirectoryStream(projects, "[0-9]*")) {
                paths.forEach(path -> found.add(new ProjectDirectory(path)));
            }
        }
        return found;
    }
}
