package fi.vantiro.localgrid.project;

import fi.vantiro.localgrid.base.GridThreads;
import fi.vantiro.localgrid.base.Log;
import fi.vantiro.localgrid.process.LineFollower;
import java.io.IOException;
import java.util.ArrayList;
import java.util.LinkedHashSet;
import java.util.List;
import java.util.Set;
import java.util.logging.Level;
import java.util.logging.Logger;

/** Follows the jobs of one project in a thread of its own, which is there while there are any. */
public final class LineFollowers {
    private static final Logger LOG = Logger.getLogger(Log.NAME);
    private static final int POLL_MS = 20;
    private static final int LINGER_MS = 1000;

    private final Set<LineFollower> followers = new LinkedHashSet<>();
    private boolean running;

    public synchronized void add(LineFollower follower) {
        if (!running) {
            GridThreads.start("vantiro-lines", this::follow);
            running = true;
        }
        followers.add(follower);
        notifyAll();
    }

    public synchronized void remove(LineFollower follower) {
        followers.remove(follower);
    }

    private void follow() {
        try {
            while (hasFollowed()) {
                continue;
            }
        } catch (InterruptedException e) {
            Thread.currentThread().interrupt();
        }
    }

    /** False when there is nothing more to follow. */
    private boolean hasFollowed() throws InterruptedException {
        try {
            List<LineFollower> present = present();
            present.forEach(LineFollowers::poll);
            return !present.isEmpty();
        } catch (OutOfMemoryError e) {
            GridThreads.awaitMemory();
            return true;
        }
    }

    /** Those to look after now; when there has been none for a while, the thread ends. */
    private synchronized List<LineFollower> present() throws InterruptedException {
        wait(followers.isEmpty() ? LINGER_MS : POLL_MS);
        List<LineFollower> present = new ArrayList<>(followers);
        running = !present.isEmpty();
        return present;
    }

    private static void poll(LineFollower follower) {
        try {
            follower.poll();
        } catch (IOException | RuntimeException | Error e) {
            // When the job ends the rest is read again, and what is wrong becomes its failure.
            LOG.log(Level.FINE, "cannot follow a job's output", e);
        }
    }
}
