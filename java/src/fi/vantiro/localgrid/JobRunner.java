package fi.vantiro.localgrid;

import java.io.IOException;
import java.nio.ByteBuffer;
import java.nio.channels.FileChannel;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.Collection;
import java.util.Map;

/** Takes one job from its inputs to its results. */
final class JobRunner implements Runnable {
    private static final int TAIL = 1000;
    private static final int NOT_EXECUTABLE = 126;
    private static final int NOT_FOUND = 127;

    private final Project project;
    private final Job job;

    JobRunner(Project project, Job job) {
        this.project = project;
        this.job = job;
    }

    @Override
    public void run() {
        if (!project.begin(job)) {
            return;
        }
        String failure = "it could not be run";
        try {
            failure = runInDirectory();
        } catch (GridException e) {
            failure = e.getMessage();
        } catch (IOException e) {
            failure = GridException.of(e).getMessage();
        } catch (InterruptedException | RuntimeException e) {
            failure = String.valueOf(e.getMessage());
        } finally {
            project.end(job, failure);
        }
    }

    private String runInDirectory() throws GridException, IOException, InterruptedException {
        WorkDirectory directory = WorkDirectory.create(project.directory().work(job.number));
        Path times = project.directory().times(job.number);
        try {
            return run(directory, times);
        } finally {
            Files.deleteIfExists(times);
            if (!project.hooks().keepsWork(project.settings().keepWork)) {
                Trees.delete(directory.root());
            }
        }
    }

    private String run(WorkDirectory directory, Path times)
            throws GridException, IOException, InterruptedException {
        JobHooks hooks = project.hooks();
        Map<String, String> environment = project.environment(job);
        ProcessStarts.holdDuring(() -> {
            project.bundles().place(directory.root());
            hooks.prepare(job.number, directory.root(), environment);
        });
        directory.inputsPlaced();
        JobProcess process = new JobProcess(job.command, environment, directory, times);
        project.attach(job, process);
        int status = process.run(job.input, hooks.lines(job.number), project.settings().jobTimeout);
        Collection<String> outputs = hooks.outputs().isEmpty()
                ? directory.changedFiles()
                : directory.listedFiles(hooks.outputs());
        String failure = failure(process, status, directory, outputs, hooks.outputs());
        project.addCpuTime(process.cpuMillis());
        project.results().add(job.number, directory.root(), outputs);
        hooks.ended(job.number, directory.root(), outputs, failure == null);
        return failure;
    }

    private String failure(JobProcess process, int status, WorkDirectory directory,
            Collection<String> outputs, Collection<String> wanted) throws IOException {
        if (process.timedOut()) {
            return "timed out after " + project.settings().jobTimeout + " s" + errors(directory);
        }
        if (status == 0) {
            for (String name : wanted) {
                if (!WorkDirectory.isPattern(name) && !outputs.contains(name)) {
                    return "it did not write its output file " + name + errors(directory);
                }
            }
            return null;
        }
        String reason = status == NOT_FOUND ? " (command not found)"
                : status == NOT_EXECUTABLE  ? " (not executable)"
                                            : "";
        return "exit status " + status + reason + errors(directory);
    }

    /** The last lines that the job wrote to standard error. */
    private static String errors(WorkDirectory directory) throws IOException {
        Path file = directory.file(WorkDirectory.STDERR);
        if (!Files.isRegularFile(file)) {
            return "";
        }
        try (FileChannel channel = FileChannel.open(file)) {
            ByteBuffer tail = ByteBuffer.allocate(TAIL);
            long start = Math.max(0, channel.size() - TAIL);
            channel.read(tail, start);
            String text = new String(tail.array(), 0, tail.position(), StandardCharsets.UTF_8);
            // The first line of a cut text is a piece of one.
            text = start > 0 ? text.substring(text.indexOf('\n') + 1) : text;
            return text.trim().isEmpty() ? "" : "\n" + text.trim();
        }
    }
}
