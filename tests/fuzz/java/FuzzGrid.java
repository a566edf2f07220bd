import fi.vantiro.localgrid.process.Message;
import fi.vantiro.localgrid.process.MessageReader;
import fi.vantiro.user.ManagementImpl;
import java.io.ByteArrayInputStream;
import java.io.ByteArrayOutputStream;
import java.io.IOException;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.nio.file.Path;
import java.nio.file.Paths;
import java.util.ArrayList;
import java.util.Arrays;
import java.util.List;
import java.util.Random;
import java.util.TreeSet;
import java.util.stream.Collectors;
import java.util.stream.Stream;
import java.util.zip.ZipEntry;
import java.util.zip.ZipOutputStream;

/**
 * Feeds generated settings and archives to the local grid, which must answer each with a result or
 * a code that has a text, and must write nowhere but where it was told.
 *
 * <p>Arguments: settings, bundle, results or message; seconds; a folder of inputs to start from;
 * the file for an input that fails. The current directory is the program's to fill.
 */
public final class FuzzGrid {
    private static final String[] SETTINGS = {"grid.home=", "temp.dir=", "grid.processors=",
            "log.level=", "job.timeout=", "keep.work=", "plugin.x.class=", "grid.password=", "\n",
            "\\", "\\u00", "-1", "99999999999", "#"};
    private static final String[] NAMES = {"../evil", "a/../../evil", "a", "a/", "a/b", "a/b/c", "",
            ".", "..", "/", "\\..\\evil", "nul\0", "space ",
            Paths.get("evil").toAbsolutePath() + "",
            String.join("", java.util.Collections.nCopies(300, "x"))};
    private static final String[] MESSAGE = {"version=1\0kind=", "\0\0", "job=", "=", "-1"};
    private static final String[] MANIFEST = {"Manifest-Version: ", "Name: ", "\r\n", "\r\n ", ":"};

    private final Random random;
    private final ManagementImpl grid = new ManagementImpl();
    private final List<byte[]> seeds = new ArrayList<>();
    private final int project;

    private FuzzGrid(long seed, Path corpus) throws IOException {
        random = new Random(seed);
        grid.init("home", null, null, null, 1, "OFF", null, 0, 0, null, null);
        project = grid.createProject(grid.open(), 0, "p");
        if (Files.isDirectory(corpus)) {
            try (Stream<Path> files = Files.list(corpus)) {
                for (Path file : files.collect(Collectors.toList())) {
                    seeds.add(Files.readAllBytes(file));
                }
            }
        }
    }

    public static void main(String[] arguments) throws IOException {
        long seed = System.nanoTime();
        FuzzGrid fuzz = new FuzzGrid(seed, Paths.get(arguments[2]));
        long end = System.nanoTime() + Long.parseLong(arguments[1]) * 1_000_000_000L;
        int executions = 0;
        for (; System.nanoTime() < end; executions++) {
            byte[] input = fuzz.input(arguments[0]);
            try {
                fuzz.check(arguments[0], input);
            } catch (Exception | Error e) {
                Files.write(Paths.get(arguments[3]), input);
                System.out.println("seed " + seed + ", input in " + arguments[3]);
                throw e;
            }
        }
        System.out.println("fuzz: executions: " + executions);
        System.exit(0);
    }

    private byte[] input(String target) throws IOException {
        if (target.equals("results")) {
            return altered(archive(), NAMES, 3);
        }
        if (target.equals("bundle") && seeds.isEmpty()) {
            seeds.add(bundle());
        }
        byte[] seed = seeds.get(random.nextInt(seeds.size()));
        String[] words = target.equals("bundle") ? MANIFEST
                : target.equals("message")       ? MESSAGE
                                                 : SETTINGS;
        return altered(seed, words, 8);
    }

    private void check(String target, byte[] input) throws IOException {
        if (target.equals("message")) {
            checkMessages(input);
            return;
        }
        Files.write(Paths.get("input"), input);
        if (target.equals("settings")) {
            ManagementImpl other = new ManagementImpl();
            expectCode(other, other.initFile("input"));
            expectCode(other, other.initFile("input", "secret"));
        } else if (target.equals("bundle")) {
            expectCode(grid, grid.uploadBundle(project, "input"));
            grid.approveUploadedBundles(project);
        } else {
            expectCode(grid, grid.unzipFile("input", "out", ""));
            expectCode(grid, grid.unzipFile("input", "out", NAMES[random.nextInt(NAMES.length)]));
            delete(Paths.get("out"));
        }
        try (Stream<Path> files = Files.list(Paths.get(""))) {
            TreeSet<String> names =
                    files.map(Path::toString).collect(Collectors.toCollection(TreeSet::new));
            names.removeAll(Arrays.asList("input", "home", "made"));
            if (!names.isEmpty()) {
                throw new AssertionError("written outside of its directory: " + names);
            }
        }
    }

    /** A message is read whatever a stranger has written before it. */
    private static void checkMessages(byte[] input) throws IOException {
        ByteArrayOutputStream bytes = new ByteArrayOutputStream();
        bytes.write(input);
        bytes.write(Message.of("pong").with("job", 7).bytes());
        MessageReader reader = new MessageReader(new ByteArrayInputStream(bytes.toByteArray()));
        Message last = null;
        while (reader.next()) {
            last = reader.message();
        }
        if (last == null || last.trouble() != null || last.number("job") != 7) {
            throw new AssertionError("the last message is read as " + last);
        }
    }

    private static void expectCode(ManagementImpl grid, int code) {
        if (code < 0 && (code < -10 || grid.getLastErrorMessage().isEmpty())) {
            throw new AssertionError("result " + code + ", text " + grid.getLastErrorMessage());
        }
    }

    private byte[] bundle() throws IOException {
        Files.createDirectories(Paths.get("made/files"));
        Files.write(Paths.get("made/files/run.sh"), "echo run".getBytes(StandardCharsets.UTF_8));
        int id = grid.createSignedBundle(project, "tool", "1", "acme", "", "a tool", "made",
                "made/files", "run.sh", "vendor", "signer", new String[] {"run.sh"},
                new String[] {}, "SHA-256");
        if (id <= 0) {
            throw new AssertionError(grid.getLastErrorMessage());
        }
        try (Stream<Path> made = Files.list(Paths.get("made"))) {
            return Files.readAllBytes(made.filter(Files::isRegularFile).findFirst().get());
        }
    }

    private byte[] archive() throws IOException {
        ByteArrayOutputStream bytes = new ByteArrayOutputStream();
        try (ZipOutputStream zip = new ZipOutputStream(bytes)) {
            for (int entries = 1 + random.nextInt(4); entries > 0; entries--) {
                String name = NAMES[random.nextInt(NAMES.length)];
                // The same name twice is refused here, though not by all who make archives.
                zip.putNextEntry(
                        new ZipEntry(random.nextBoolean() ? name : "job-1/" + name + entries));
                zip.write(name.getBytes(StandardCharsets.UTF_8));
                zip.closeEntry();
            }
        } catch (IOException e) {
            return archive();
        }
        return bytes.toByteArray();
    }

    /** Up to so many changes: bytes altered, taken away, put in, or a word in their place. */
    private byte[] altered(byte[] input, String[] words, int most) {
        ByteArrayOutputStream bytes = new ByteArrayOutputStream();
        byte[] current = input;
        for (int changes = random.nextInt(most + 1); changes > 0; changes--) {
            int from = random.nextInt(current.length + 1);
            int to = Math.min(current.length, from + random.nextInt(random.nextBoolean() ? 2 : 40));
            byte[] put = random.nextInt(3) == 0
                    ? words[random.nextInt(words.length)].getBytes(StandardCharsets.UTF_8)
                    : new byte[random.nextInt(3)];
            if (put.length < 3) {
                random.nextBytes(put);
            }
            bytes.reset();
            bytes.write(current, 0, from);
            bytes.write(put, 0, put.length);
            bytes.write(current, to, current.length - to);
            current = bytes.toByteArray();
        }
        return current;
    }

    private static void delete(Path root) throws IOException {
        if (!Files.exists(root)) {
            return;
        }
        try (Stream<Path> files = Files.walk(root)) {
            for (Path file : files.sorted((a, b) -> b.compareTo(a)).collect(Collectors.toList())) {
                Files.delete(file);
            }
        }
    }
}
