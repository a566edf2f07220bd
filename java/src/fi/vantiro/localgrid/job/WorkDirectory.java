package fi.vantiro.localgrid.job;

import fi.vantiro.localgrid.base.Arguments;
import fi.vantiro.localgrid.files.Failures;
import fi.vantiro.localgrid.files.Outputs;
import fi.vantiro.localgrid.files.Trees;
import java.io.IOException;
import java.nio.file.FileSystems;
import java.nio.file.Files;
import java.nio.file.LinkOption;
import java.nio.file.Path;
import java.nio.file.PathMatcher;
import java.nio.file.attribute.BasicFileAttributes;
import java.util.ArrayDeque;
import java.util.Arrays;
import java.util.Collection;
import java.util.Deque;
import java.util.HashMap;
import java.util.List;
import java.util.Map;
import java.util.Set;
import java.util.TreeMap;
import java.util.TreeSet;
import java.util.stream.Collectors;

/** The working directory of one job: what the job found there, and what it left. */
public final class WorkDirectory {
    public static final String STDOUT = "stdout";
    public static final String STDERR = "stderr";

    private final Path root;
    private final Path place;
    /** What could not be looked at. */
    private final Failures lost = new Failures();
    private Map<String, String> inputs = new HashMap<>();

    private WorkDirectory(Path root) throws IOException {
        this.root = root;
        place = root.toRealPath();
    }

    /** Makes the directory, empty. */
    static WorkDirectory create(Path root) throws IOException {
        Trees.delete(root);
        Trees.create(root.getParent());
        Files.createDirectory(root);
        return new WorkDirectory(root);
    }

    Path root() {
        return root;
    }

    Path file(String name) {
        return root.resolve(name);
    }

    /** Takes all that is there now for the job's inputs. */
    void inputsPlaced() {
        inputs = marks();
    }

    /** The files that the job created or changed. */
    Outputs changedFiles() {
        if (isElsewhere()) {
            return noFiles();
        }
        Map<String, String> now = marks();
        now.entrySet().removeIf(file -> file.getValue().equals(inputs.get(file.getKey())));
        return outputs(now.keySet());
    }

    /** The files of these names, or that fit these patterns, and the two streams. */
    Outputs listedFiles(Collection<String> listed) {
        if (isElsewhere()) {
            return noFiles();
        }
        Set<String> found = new TreeSet<>();
        for (String name : listed) {
            if (!isPattern(name) && isFile(name)) {
                found.add(name);
            }
        }
        List<PathMatcher> matchers =
                listed.stream()
                        .filter(WorkDirectory::isPattern)
                        .map(pattern -> FileSystems.getDefault().getPathMatcher("glob:" + pattern))
                        .collect(Collectors.toList());
        if (!matchers.isEmpty()) {
            for (String name : marks().keySet()) {
                Path path = FileSystems.getDefault().getPath(name);
                if (matchers.stream().anyMatch(matcher -> matcher.matches(path))) {
                    found.add(name);
                }
            }
        }
        return outputs(found);
    }

    /** Whether the job put something else there, a link to files that are not its own for one. */
    private boolean isElsewhere() {
        try {
            return !root.toRealPath().equals(place) || !Files.isDirectory(root);
        } catch (IOException e) {
            return true;
        }
    }

    private Outputs noFiles() {
        lost.add(root, new IOException("it is not the directory that the job was given"));
        return new Outputs(root, new TreeSet<>(), lost);
    }

    /** The named files and the streams, unless the job removed them. */
    private Outputs outputs(Collection<String> found) {
        Set<String> names = new TreeSet<>(found);
        for (String stream : Arrays.asList(STDOUT, STDERR)) {
            if (isFile(stream)) {
                names.add(stream);
            } else if (Files.exists(file(stream), LinkOption.NOFOLLOW_LINKS)) {
                lost.add(file(stream), new IOException("it is no regular file any more"));
            }
        }
        return new Outputs(root, names, lost);
    }

    /** Whether a file, or a link to one, has the name, and only directories lead to it. */
    private boolean isFile(String name) {
        Path directory = root;
        for (Path part : FileSystems.getDefault().getPath(name)) {
            if (!Files.isDirectory(directory, LinkOption.NOFOLLOW_LINKS)) {
                return false;
            }
            Trees.giveAccess(directory);
            directory = directory.resolve(part);
        }
        return Files.isRegularFile(directory);
    }

    /** A name or pattern in the form that listedFiles takes. */
    public static String pattern(String text) {
        String pattern = isPattern(text) ? text : Arguments.inside(text);
        FileSystems.getDefault().getPathMatcher("glob:" + pattern);
        return pattern;
    }

    /** Whether a listed output is a pattern and not a name. */
    public static boolean isPattern(String text) {
        return text.matches("(?s).*[*?\\[{\\\\].*");
    }

    /** Every file below the directory with a mark that changes when the file does. */
    private Map<String, String> marks() {
        Map<String, String> found = new TreeMap<>();
        Deque<Path> directories = new ArrayDeque<>();
        directories.add(root);
        while (!directories.isEmpty()) {
            Path directory = directories.remove();
            try {
                Trees.giveAccess(directory);
                for (Path file : Trees.list(directory, "*")) {
                    mark(file, found, directories);
                }
            } catch (IOException e) {
                lost.add(directory, e);
            }
        }
        return found;
    }

    private void mark(Path path, Map<String, String> found, Deque<Path> directories) {
        try {
            Path file = Trees.isNamed(path.getFileName()) ? path : Trees.giveName(path);
            BasicFileAttributes attributes = Files.readAttributes(
                    file, BasicFileAttributes.class, LinkOption.NOFOLLOW_LINKS);
            if (attributes.isDirectory()) {
                directories.add(file);
            } else if (attributes.isRegularFile()
                    || attributes.isSymbolicLink() && Files.isRegularFile(file)) {
                found.put(root.relativize(file).toString(),
                        attributes.fileKey() + " " + attributes.size() + " "
                                + attributes.lastModifiedTime());
            }
        } catch (IOException e) {
            lost.add(path, e);
        }
    }
}
