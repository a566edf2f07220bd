package fi.vantiro.localgrid;

import java.io.IOException;
import java.nio.charset.StandardCharsets;
import java.nio.file.DirectoryIteratorException;
import java.nio.file.DirectoryStream;
import java.nio.file.Files;
import java.nio.file.Path;
import java.nio.file.Paths;
import java.util.ArrayList;
import java.util.Arrays;
import java.util.List;

/**
 * The processes whose environment holds a given variable. Children inherit it, also those that have
 * left the process tree of the job that started them.
 */
final class MarkedProcesses {
    private static final int ROUNDS = 100;
    private static final int PAUSE_MS = 5;

    private MarkedProcesses() {}

    /** Kills them all, and those that they started meanwhile. */
    static void kill(String variable, String value) throws IOException, InterruptedException {
        String mark = bytes(("\0" + variable + "=" + value + "\0").getBytes());
        for (int round = 0; round < ROUNDS; round++) {
            List<String> processes = find(mark);
            if (processes.isEmpty()) {
                return;
            }
            List<String> command =
                    new ArrayList<>(Arrays.asList("/bin/sh", "-c", "kill -KILL \"$@\" 2>&-", "sh"));
            command.addAll(processes);
            ProcessStarts.start(new ProcessBuilder(command)).waitFor();
            Thread.sleep(PAUSE_MS);
        }
    }

    private static List<String> find(String mark) throws IOException {
        List<String> found = new ArrayList<>();
        try (DirectoryStream<Path> processes =
                        Files.newDirectoryStream(Paths.get("/proc"), "[0-9]*")) {
            for (Path process : processes) {
                if (environment(process).contains(mark)) {
                    found.add(process.getFileName().toString());
                }
            }
        } catch (DirectoryIteratorException e) {
            throw e.getCause();
        }
        return found;
    }

    private static String environment(Path process) {
        try {
            return "\0" + bytes(Files.readAllBytes(process.resolve("environ")));
        } catch (IOException e) {
            // The process has ended, or belongs to another user and so is none of ours.
            return "";
        }
    }

    private static String bytes(byte[] raw) {
        return new String(raw, StandardCharsets.ISO_8859_1);
    }
}
