package fi.vantiro.localgrid;

import java.util.List;
import java.util.concurrent.CopyOnWriteArrayList;

/** A caller's session: the projects created in it. */
final class Session {
    private final int handle;
    private final List<Project> projects = new CopyOnWriteArrayList<>();
    private boolean open = true;

    Session(int handle) {
        this.handle = handle;
    }

    synchronized void close() throws GridException {
        checkOpen();
        open = false;
    }

    synchronized void checkOpen() throws GridException {
        if (!open) {
            throw new GridException(Status.WRONG_STATE, "session " + handle + " is closed");
        }
    }

    List<Project> projects() {
        return projects;
    }
}
