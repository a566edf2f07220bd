package fi.vantiro.localgrid.job;

/** Takes the lines that jobs write. */
@FunctionalInterface
public interface LineReceiver {
    /** Takes a line, or a piece of a long one of which more is to come. */
    void take(int job, String text, boolean last);
}
