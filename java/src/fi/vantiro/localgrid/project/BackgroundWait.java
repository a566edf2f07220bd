package fi.vantiro.localgrid.project;

import fi.vantiro.localgrid.base.GridException;
import fi.vantiro.localgrid.base.GridThreads;
import fi.vantiro.localgrid.base.Status;
import java.io.IOException;

/** A thread that waits for a project and downloads the result of each job as it ends. */
public final class BackgroundWait {
    private final Project project;
    private final Runnable downloading = this::download;
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

    private void follow() {
        try {
            int ended = 0;
            boolean last = false;
            while (!last) {
                ended = project.jobs().awaitEnded(ended);
                last = project.jobs().isCompleted();
                GridThreads.untilMemory(downloading);
            }
        } catch (InterruptedException e) {
            Thread.currentThread().interrupt();
        }
    }

    private void download() {
        if (Thread.currentThread().isInterrupted()) {
            return;
        }
        try {
            project.results().downloadNew();
        } catch (IOException e) {
            report(GridException.of(e));
        } catch (GridException e) {
            report(e);
        }
    }

    /** What cannot be downloaded now is tried again when the next job has ended. */
    private void report(GridException failure) {
        project.report("cannot download its results", failure);
    }
}
