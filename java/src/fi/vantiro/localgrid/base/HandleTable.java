package fi.vantiro.localgrid.base;

import java.util.ArrayList;
import java.util.List;
import java.util.Map;
import java.util.concurrent.ConcurrentHashMap;
import java.util.concurrent.atomic.AtomicInteger;

/** The objects that callers know by number; a number is never used twice in a process. */
public final class HandleTable {
    private static final AtomicInteger LAST = new AtomicInteger();

    private final Map<Integer, Object> objects = new ConcurrentHashMap<>();
    private boolean closed;

    /** A number for an object that is yet to be made. */
    public int next() {
        return LAST.incrementAndGet();
    }

    /** Adds an object; refused while all are being forgotten, when nobody could reach it again. */
    public synchronized void put(int handle, Object object) throws GridException {
        if (closed) {
            throw new GridException(Status.WRONG_STATE, "the grid is being unloaded");
        }
        objects.put(handle, object);
    }

    public synchronized void closeForNew() throws GridException {
        if (closed) {
            throw new GridException(Status.WRONG_STATE, "the grid is being unloaded already");
        }
        closed = true;
    }

    public synchronized void openForNew() {
        closed = false;
    }

    /** The object of that number when it is of the kind asked for, else null. */
    public <T> T find(int handle, Class<T> type) {
        Object object = objects.get(handle);
        return type.isInstance(object) ? type.cast(object) : null;
    }

    /** The object of that number; the text of a failure names the kind. */
    public <T> T get(int handle, Class<T> type, String kind) {
        T object = find(handle, type);
        if (object == null) {
            throw new IllegalArgumentException("unknown " + kind + " handle " + handle);
        }
        return object;
    }

    public <T> List<T> all(Class<T> type) {
        List<T> found = new ArrayList<>();
        for (Object object : objects.values()) {
            if (type.isInstance(object)) {
                found.add(type.cast(object));
            }
        }
        return found;
    }

    /** Forgets an object; false when another thread has done so already. */
    public boolean remove(int handle) {
        return objects.remove(handle) != null;
    }

    public void clear() {
        objects.clear();
    }
}
