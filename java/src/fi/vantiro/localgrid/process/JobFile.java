package fi.vantiro.localgrid.process;

import fi.vantiro.localgrid.base.NativeText;
import fi.vantiro.localgrid.settings.Settings;
import java.io.ByteArrayOutputStream;
import java.io.IOException;
import java.io.OutputStream;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.nio.file.Path;
import java.nio.file.StandardOpenOption;
import java.util.ArrayList;
import java.util.List;
import java.util.Map;

/**
 * What a job's keeper reads about it, and the files beside that for what the job is told and says.
 */
public final class JobFile {
    private final Path path;

    public JobFile(Path path) {
        this.path = path;
    }

    public Path path() {
        return path;
    }

    /** What the launcher of the job wrote. */
    public Path launcherLog() {
        return beside(".launcher");
    }

    private Path beside(String suffix) {
        return path.resolveSibling(path.getFileName() + suffix);
    }

    /** Writes texts, each ended by a NUL, in the order in which the keeper reads them. */
    public void write(Path directory, Settings settings, Path lock, Path keeper,
            Map<String, String> environment, List<String> command) throws IOException {
        List<String> variables = new ArrayList<>();
        environment.forEach((name, value) -> variables.add(name + "=" + value));
        ByteArrayOutputStream texts = new ByteArrayOutputStream();
        add(texts, directory.toString());
        add(texts, String.valueOf(settings.jobTimeout));
        add(texts, settings.jobLauncher);
        add(texts, settings.jobCancel);
        add(texts, String.valueOf(settings.jobCancelWait));
        add(texts, lock.toString());
        add(texts, keeper.toString());
        addAll(texts, variables);
        addAll(texts, command);
        try (OutputStream file = Files.newOutputStream(path)) {
            texts.writeTo(file);
        }
    }

    private static void addAll(ByteArrayOutputStream texts, List<String> list) {
        add(texts, String.valueOf(list.size()));
        list.forEach(text -> add(texts, text));
    }

    private static void add(ByteArrayOutputStream texts, String text) {
        byte[] bytes = NativeText.bytes(text);
        texts.write(bytes, 0, bytes.length);
        texts.write(0);
    }

    /** Adds a line to the job's standard input. */
    public void addInput(String line) throws IOException {
        Files.createDirectories(path.getParent());
        Files.write(beside(".input"), (line + "\n").getBytes(StandardCharsets.UTF_8),
                StandardOpenOption.CREATE, StandardOpenOption.APPEND);
    }

    /** Removes them all. */
    public void delete() throws IOException {
        for (String suffix : new String[] {"", ".input", ".word", ".launcher"}) {
            Files.deleteIfExists(beside(suffix));
        }
    }
}
