package fi.vantiro.localgrid.job;

import fi.vantiro.localgrid.base.GridThreads;
import fi.vantiro.localgrid.base.Log;
import java.io.IOException;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.LinkedHashSet;
import java.util.List;
import java.util.Set;
import java.util.logging.Level;
import java.util.logging.Logger;

/**
 * The lines that the jobs of a run write, for the one thread that hands them to its receiver.
 * However slow that is, no job waits for it, and what it has not got yet waits in the jobs' files.
 */
public final class LineFeed {
    private static final Logger LOG = Logger.getLogger(Log.NAME);

    private final LineReceiver receiver;
    private final Set<LineFollower> followers = new LinkedHashSet<>();
    private final Runnable polling = this::pollAll;
    private boolean more;

    public LineFeed(LineReceiver receiver) {
        this.receiver = receiver;
    }

    /** Follows a file that the job writes. */
    synchronized LineFollower follow(int job, Path path) throws IOException {
        LineFollower follower = new LineFollower(job, path);
        followers.add(follower);
        return follower;
    }

    /** Hands on what has come; whether there may be more at once. */
    public boolean deliver() {
        more = false;
        GridThreads.untilMemory(polling);
        return more;
    }

    private void pollAll() {
        for (LineFollower follower : present()) {
            boolean over;
            try {
                more |= follower.poll(receiver);
                over = follower.isOver();
            } catch (IOException e) {
                LOG.log(Level.WARNING, "the lines of a job cannot be read", e);
                over = true;
            }
            if (over) {
                remove(follower);
            }
        }
    }

    private synchronized List<LineFollower> present() {
        return new ArrayList<>(followers);
    }

    private synchronized void remove(LineFollower follower) {
        followers.remove(follower);
    }

    /** Whether nothing is followed any more. */
    public synchronized boolean isEmpty() {
        return followers.isEmpty();
    }
}
