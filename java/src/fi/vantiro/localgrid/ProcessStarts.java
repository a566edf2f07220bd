package fi.vantiro.localgrid;

import java.io.IOException;
import java.util.concurrent.locks.Lock;
import java.util.concurrent.locks.ReadWriteLock;
import java.util.concurrent.locks.ReentrantReadWriteLock;

/**
 * Keeps the start of processes apart from the writing of programs. A process inherits the files
 * that are open when it is forked, and a program that is open for writing somewhere cannot be run.
 */
final class ProcessStarts {
    private static final ReadWriteLock GATE = new ReentrantReadWriteLock();

    private ProcessStarts() {}

    /** Files are written. */
    interface Writing {
        void run() throws GridException, IOException;
    }

    /** Writes files while no process is started. */
    static void holdDuring(Writing writing) throws GridException, IOException {
        Lock lock = GATE.readLock();
        lock.lock();
        try {
            writing.run();
        } finally {
            lock.unlock();
        }
    }

    /** Starts a process while no files are written; returns when its program has taken over. */
    static Process start(ProcessBuilder builder) throws IOException {
        Lock lock = GATE.writeLock();
        lock.lock();
        try {
            return builder.start();
        } finally {
            lock.unlock();
        }
    }
}
