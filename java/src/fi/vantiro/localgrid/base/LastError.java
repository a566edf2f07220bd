package fi.vantiro.localgrid.base;

import java.io.IOException;
import java.util.logging.Logger;

/** Turns failures into result codes and remembers the last one, exceptions included. */
public final class LastError {
    private static final Logger LOG = Logger.getLogger(Log.NAME);
    /** What the native library gives its caller for an exception. */
    private static final int UNCAUGHT = -13;

    private int code;
    private String message;

    /** Work that ends without a value. */
    @FunctionalInterface
    public interface Action {
        void run() throws GridException, IOException, InterruptedException;
    }

    /** Work that ends with a value. */
    @FunctionalInterface
    public interface Query<T> {
        T run() throws GridException, IOException, InterruptedException;
    }

    /** Runs the action; 0, or the code of its failure. */
    public int statusOf(Action action) {
        return numberOf(() -> {
            action.run();
            return Status.OK.code();
        });
    }

    /** Runs a query for a handle, an id or a count; its value, or the code of its failure. */
    public int numberOf(Query<Integer> query) {
        try {
            return remembering(query);
        } catch (GridException e) {
            return e.status().code();
        }
    }

    /** Runs a query whose value has no room for a code; a failure becomes an exception. */
    public <T> T valueOf(Query<T> query) {
        try {
            return remembering(query);
        } catch (GridException e) {
            throw new IllegalStateException(e.getMessage(), e);
        }
    }

    /** Runs a query, and remembers its failure for the caller who handles it. */
    public <T> T remembering(Query<T> query) throws GridException {
        try {
            return query.run();
        } catch (GridException e) {
            throw record(e);
        } catch (IOException e) {
            throw record(GridException.of(e));
        } catch (InterruptedException e) {
            Thread.currentThread().interrupt();
            throw record(new GridException(Status.STOPPED, "the calling thread was interrupted"));
        } catch (RuntimeException | Error e) {
            record(UNCAUGHT, GridException.text(e));
            throw e;
        }
    }

    /** Remembers a failure and hands it back. */
    public GridException record(GridException failure) {
        record(failure.status().code(), failure.getMessage());
        return failure;
    }

    private synchronized void record(int newCode, String text) {
        code = newCode;
        message = text;
        LOG.fine(text);
    }

    /** The code of the last failure, 0 when there was none. */
    public synchronized int code() {
        return code;
    }

    /** The text of the last failure, null when there was none. */
    public synchronized String message() {
        return message;
    }

    /** Forgets the last failure. */
    public synchronized void reset() {
        code = Status.OK.code();
        message = null;
    }
}
