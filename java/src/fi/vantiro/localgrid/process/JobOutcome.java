package fi.vantiro.localgrid.process;

import java.util.Locale;

/** How a job ended, as its keeper tells it. */
public final class JobOutcome {
    /** The keeper itself was ended; it takes its jobs with it. */
    static final JobOutcome UNKEPT = new JobOutcome(
            Ending.FAILED, 0, 0, Keeper.NAME + ", which looks after the jobs, was ended");

    /** The words of the keeper. */
    public enum Ending { EXITED, TIMEOUT, STOPPED, LOST, FAILED }

    public final Ending ending;
    /** The exit status of the job, or of its launcher when the job is lost. */
    public final int status;
    public final long cpuMillis;
    /** Why it could not be run; empty otherwise. */
    public final String why;

    private JobOutcome(Ending ending, int status, long cpuMillis, String why) {
        this.ending = ending;
        this.status = status;
        this.cpuMillis = cpuMillis;
        this.why = why;
    }

    /** Reads "word status milliseconds why". */
    static JobOutcome parse(String text) {
        String[] words = text.split(" ", 4);
        return new JobOutcome(Ending.valueOf(words[0].toUpperCase(Locale.ROOT)),
                Integer.parseInt(words[1]), Long.parseLong(words[2]), words[3]);
    }
}
