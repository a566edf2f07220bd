package fi.vantiro.localgrid;

/** Helper threads; like all threads of the grid they never keep the Java virtual machine alive. */
final class GridThreads {
    private GridThreads() {}

    static Thread start(String name, Runnable work) {
        Thread thread = new Thread(work, name);
        thread.setDaemon(true);
        thread.start();
        return thread;
    }
}
