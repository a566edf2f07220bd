package fi.vantiro.localgrid.project;

import fi.vantiro.localgrid.base.GridException;
import fi.vantiro.localgrid.base.GridThreads;
import fi.vantiro.localgrid.base.Status;
import java.io.IOException;

/** A thread that waits for a project and downloads the result of each job as it ends. */
public final class BackgroundWait {
    private final Project project;
    private Thread thread;

    BackgroundWait(Project project) {
        this.project = project;
    }

    public synchronized void start() throws GridException {
        if (isWaiting()) {
            throw new GridException(Status.WRONG_STATE, project + " is waited for already");
        }
        thread = GridThreads.start("vantiro-wait", this::follow);
    }

    public synchronized void stop() throws GridException {
        if (!isWaiting()) {
            throw new GridException(Status.WRONG_STATE, project + " is not waited for");
        }
        thread.interrupt();
        thread = null;
    }

    public synchronized void stopIfWaiting() throws GridException {
        if (isWaiting()) {
            stop();
        }
    }

    private boolean isWaiting() {
        return thread != null && thread.isAlive();
    }

    private boolean isDownloaded() throws GridException, IOException {
        try {
            project.results().downloadNew();
            return true;
        } catch (OutOfMemoryError e) {
            return false;
        }
    }

    private void follow() {
        try {
            int ended = 0;
            boolean last = false;
            while (!last) {
                ended = project.jobs().awaitEnded(ended);
                last = project.jobs().isCompleted();
                while (!isDownloaded() && !Thread.currentThread().isInterrupted()) {
                    GridThreads.awaitMemory();
                }
            }
        } catch (IOException e) {
            project.report("cannot download its results", e);
        } catch (GridException e) {
            project.report("cannot download its results", e);
        } catch (InterruptedException e) {
            Thread.currentThread().interrupt();
        }
    }
}
