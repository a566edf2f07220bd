package fi.vantiro.localgrid.process;

import java.nio.file.Path;
import java.util.ArrayList;
import java.util.List;
import java.util.Map;

/** What a keeper is told about a job that it is to run. */
public final class JobRequest {
    private final Path directory;
    private final long timeoutMillis;
    private final List<String> variables = new ArrayList<>();
    private final List<String> command;
    private Launch launch;

    private static final class Launch {
        String launcher;
        String cancel;
        long graceMillis;
        Path file;
        Path keeper;
        Path lock;
    }

    /** A job in that directory; 0 is no limit of its time. */
    public JobRequest(Path directory, long timeoutMillis, Map<String, String> environment,
            List<String> command) {
        this.directory = directory;
        this.timeoutMillis = timeoutMillis;
        this.command = command;
        environment.forEach((name, value) -> variables.add(name + "=" + value));
    }

    /**
     * Has a launcher run it elsewhere, where that keeper, the description in the file and the lock
     * of the program are found; a shell line ends what the launcher leaves behind.
     */
    public JobRequest launchedBy(String launcher, String cancel, long graceMillis, JobFile file,
            Path keeper, Path lock) {
        launch = new Launch();
        launch.launcher = launcher;
        launch.cancel = cancel;
        launch.graceMillis = graceMillis;
        launch.file = file.path();
        launch.keeper = keeper;
        launch.lock = lock;
        return this;
    }

    Message message(long id) {
        // The number comes early, so that it is read even of a message that is too long.
        Message message = Message.of("run")
                                  .with("job", id)
                                  .with("directory", directory.toString())
                                  .with("timeout_ms", timeoutMillis);
        if (launch != null) {
            message.with("launcher", launch.launcher)
                    .with("cancel", launch.cancel)
                    .with("grace_ms", launch.graceMillis)
                    .with("file", launch.file.toString())
                    .with("keeper", launch.keeper.toString())
                    .with("lock", launch.lock.toString());
        }
        return message.withAll("variable", variables).withAll("argument", command);
    }
}
