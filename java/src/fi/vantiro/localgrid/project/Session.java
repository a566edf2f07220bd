package fi.vantiro.localgrid.project;

import fi.vantiro.localgrid.base.GridException;
import fi.vantiro.localgrid.base.Status;
import java.util.List;
import java.util.concurrent.CopyOnWriteArrayList;

/** A caller's session: the projects created in it. */
public final class Session {
    private final int handle;
    private final List<Project> projects = new CopyOnWriteArrayList<>();
    private boolean open = true;

    public Session(int handle) {
        this.handle = handle;
    }

    public synchronized void close() throws GridException {
        checkOpen();
        open = false;
    }

    public synchronized void checkOpen() throws GridException {
        if (!open) {
            throw new GridException(Status.WRONG_STATE, "session " + handle + " is closed");
        }
    }

    public List<Project> projects() {
        return projects;
    }
}
