package fi.vantiro.localgrid.process;

import fi.vantiro.localgrid.base.GridException;
import java.io.IOException;

/** The keeper of one project, from its start until its last job has ended. */
public final class ProjectKeeper {
    private final Keepers keepers;
    private Keeper keeper;

    public ProjectKeeper(Keepers keepers) {
        this.keepers = keepers;
    }

    /** Takes one whose jobs get what the program has at this moment, unless it has one. */
    public synchronized void take() throws GridException, IOException {
        if (keeper == null) {
            keeper = keepers.ofThisMoment();
        }
    }

    /** The keeper for the next job, another one when the first has gone. */
    public synchronized Keeper get() throws GridException, IOException {
        if (keeper.isGone()) {
            keeper = keepers.inPlaceOf(keeper);
        }
        return keeper;
    }

    public synchronized void giveBack() {
        if (keeper != null) {
            keepers.release(keeper);
            keeper = null;
        }
    }
}
