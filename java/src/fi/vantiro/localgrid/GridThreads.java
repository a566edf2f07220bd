package fi.vantiro.localgrid;

/** Threads of the grid never keep the Java virtual machine alive. */
final class GridThreads {
    private GridThreads() {}

    static Thread daemon(String name, Runnable work) {
        Thread thread = new Thread(work, name);
        thread.setDaemon(true);
        return thread;
    }

    static Thread start(String name, Runnable work) {
        Thread thread = daemon(name, work);
        thread.start();
        return thread;
    }
}
