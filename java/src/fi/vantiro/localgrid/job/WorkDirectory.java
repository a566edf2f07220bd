package fi.vantiro.localgrid.job;

import fi.vantiro.localgrid.base.Arguments;
import fi.vantiro.localgrid.files.Trees;
import java.io.IOException;
import java.nio.file.FileSystems;
import java.nio.file.FileVisitResult;
import java.nio.file.Files;
import java.nio.file.Path;
import java.nio.file.PathMatcher;
import java.nio.file.SimpleFileVisitor;
import java.nio.file.attribute.BasicFileAttributes;
import java.util.Collection;
import java.util.HashMap;
import java.util.Map;
import java.util.TreeMap;
import java.util.TreeSet;
import java.util.function.Predicate;
import java.util.stream.Collectors;

/** The working directory of one job: what the job found there, and what it left. */
public final class WorkDirectory {
    public static final String STDOUT = "stdout";
    public static final String STDERR = "stderr";

    private final Path root;
    private Map<String, String> inputs = new HashMap<>();

    private WorkDirectory(Path root) {
        this.root = root;
    }

    /** Makes the directory, empty. */
    static WorkDirectory create(Path root) throws IOException {
        Trees.delete(root);
        Files.createDirectories(root);
        return new WorkDirectory(root);
    }

    Path root() {
        return root;
    }

    Path file(String name) {
        return root.resolve(name);
    }

    /** Takes all that is there now for the job's inputs. */
    void inputsPlaced() throws IOException {
        inputs = files();
    }

    /** The relative names of the files that the job created or changed, in order. */
    Collection<String> changedFiles() throws IOException {
        Map<String, String> now = files();
        now.entrySet().removeIf(file -> file.getValue().equals(inputs.get(file.getKey())));
        return now.keySet();
    }

    /** The relative names of the files that fit a pattern, in order, and the two streams. */
    Collection<String> listedFiles(Collection<String> patterns) throws IOException {
        Collection<PathMatcher> matchers =
                patterns.stream()
                        .map(pattern -> FileSystems.getDefault().getPathMatcher("glob:" + pattern))
                        .collect(Collectors.toList());
        Predicate<String> listed = name
                -> name.equals(STDOUT) || name.equals(STDERR)
                || matchers.stream().anyMatch(
                        matcher -> matcher.matches(FileSystems.getDefault().getPath(name)));
        return files().keySet().stream().filter(listed).collect(
                Collectors.toCollection(TreeSet::new));
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
    private Map<String, String> files() throws IOException {
        Map<String, String> found = new TreeMap<>();
        boolean[] unnamed = {false};
        Files.walkFileTree(root, new SimpleFileVisitor<Path>() {
            @Override
            public FileVisitResult visitFile(Path file, BasicFileAttributes attributes) {
                unnamed[0] |= !Trees.isNamed(file);
                if (Files.isRegularFile(file)) {
                    found.put(root.relativize(file).toString(),
                            attributes.fileKey() + " " + attributes.size() + " "
                                    + attributes.lastModifiedTime());
                }
                return FileVisitResult.CONTINUE;
            }
        });
        if (unnamed[0]) {
            Trees.nameFiles(root);
            return files();
        }
        return found;
    }
}
