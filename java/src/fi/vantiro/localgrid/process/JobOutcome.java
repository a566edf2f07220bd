package fi.vantiro.localgrid.process;

import java.util.Locale;

/** How a job ended, as its keeper tells it. */
public final class JobOutcome {
    /** The keeper itself was ended; it takes its jobs with it. */
    static final JobOutcome UNKEPT = new JobOutcome(Ending.UNKEPT,
            KeeperProgram.NAME + ", which looks after the jobs, was ended; what the job had put "
                    + "into a session of its own may still run");

    /**
     * The words of the keeper. A job is lost when its launcher ended before it, and unkept when
     * whoever looked after it was killed; failed is one that never ran.
     */
    public enum Ending { EXITED, TIMEOUT, STOPPED, LOST, UNKEPT, FAILED }

    public final Ending ending;
    /** The exit status of the job as a shell tells it, or of its launcher when the job is lost. */
    public final int status;
    /** The number of the signal that ended it; 0 for none. */
    public final int signal;
    public final long cpuMillis;
    public final long wallMillis;
    /** The most memory that one of its processes had. */
    public final long peakKilobytes;
    /** Why it could not be run or was lost sight of; empty otherwise. */
    public final String why;

    private JobOutcome(Ending ending, String why) {
        this.ending = ending;
        this.why = why;
        status = 0;
        signal = 0;
        cpuMillis = 0;
        wallMillis = 0;
        peakKilobytes = 0;
    }

    private JobOutcome(Message message) {
        ending = Ending.valueOf(message.text("ending").toUpperCase(Locale.ROOT));
        status = Math.toIntExact(message.number("status"));
        signal = Math.toIntExact(message.number("signal"));
        cpuMillis = message.number("cpu_ms");
        wallMillis = message.number("wall_ms");
        peakKilobytes = message.number("peak_kb");
        why = message.text("why");
    }

    /** Never fails: whoever waits for the job is told also of an answer that cannot be read. */
    static JobOutcome read(Message message) {
        try {
            if (message.trouble() != null) {
                return unreadable(message.trouble());
            }
            return new JobOutcome(message);
        } catch (IllegalArgumentException | ArithmeticException e) {
            return unreadable(e.getMessage());
        }
    }

    private static JobOutcome unreadable(String why) {
        return new JobOutcome(Ending.UNKEPT,
                "what " + KeeperProgram.NAME + " says of its end cannot be read: " + why);
    }
}
