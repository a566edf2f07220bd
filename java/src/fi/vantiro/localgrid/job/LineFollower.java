package fi.vantiro.localgrid.job;

import java.io.Closeable;
import java.io.IOException;
import java.nio.ByteBuffer;
import java.nio.channels.FileChannel;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.nio.file.LinkOption;
import java.nio.file.Path;
import java.nio.file.StandardOpenOption;
import java.util.Arrays;

/**
 * Hands on the lines of a file while a job writes it, to one thread. What fails, as it may in a
 * full heap, can be tried again, and no byte is lost or read twice.
 */
final class LineFollower implements Closeable {
    /** A longer line is handed on in pieces, so that no output can fill the memory. */
    private static final int MAX_LINE = 1 << 16;
    /** Read in one go, so that a job which writes without end does not keep others waiting. */
    private static final int MAX_POLL = 1 << 18;

    private final int job;
    private final Object identity;
    /** What was read and is not kept or handed on yet. */
    private final ByteBuffer buffer = (ByteBuffer) ByteBuffer.allocate(1 << 13).limit(0);
    private byte[] line = new byte[1 << 8];
    private int length;

    // Guarded by this: the job ends while its lines are read.
    private FileChannel file;
    private long position;
    private boolean ended;
    private Path kept;
    private boolean over;

    /** Follows a file that is there and that the job has not got yet: it may put others there. */
    LineFollower(int job, Path path) throws IOException {
        this.job = job;
        identity = identity(path);
        file = FileChannel.open(path, StandardOpenOption.READ, LinkOption.NOFOLLOW_LINKS);
    }

    private static Object identity(Path path) throws IOException {
        return Files.getAttribute(path, "fileKey", LinkOption.NOFOLLOW_LINKS);
    }

    /** Whether a path leads to the file that is followed. */
    boolean isAt(Path path) {
        try {
            return identity.equals(identity(path));
        } catch (IOException e) {
            return false;
        }
    }

    /**
     * The job has ended. What is not read yet may stay for long, so that a file that is kept is
     * closed, and opened again when it is the turn of its lines; null when it is not kept.
     */
    synchronized void end(Path where) throws IOException {
        if (ended) {
            return;
        }
        ended = true;
        if (where != null) {
            kept = where;
            file.close();
        }
    }

    /** Hands on some of what has come; whether there may be more at once. */
    boolean poll(LineReceiver receiver) throws IOException {
        for (int read = 0; read < MAX_POLL; read += buffer.limit()) {
            while (buffer.hasRemaining()) {
                take(buffer.get(buffer.position()), receiver);
                buffer.get();
            }
            if (!fill()) {
                if (isOver() && length > 0) {
                    deliver(length, true, receiver);
                }
                return false;
            }
        }
        return true;
    }

    private synchronized boolean fill() throws IOException {
        if (!file.isOpen() && !over) {
            file = FileChannel.open(kept, StandardOpenOption.READ, LinkOption.NOFOLLOW_LINKS);
        }
        buffer.clear();
        int count = -1;
        try {
            count = over ? -1 : file.read(buffer, position);
        } finally {
            buffer.limit(Math.max(count, 0)).position(0);
        }
        position += buffer.limit();
        if (count <= 0 && ended) {
            close();
        }
        return count > 0;
    }

    /** Whether everything was handed on, but for a last line without its end. */
    synchronized boolean isOver() {
        return over;
    }

    @Override
    public synchronized void close() throws IOException {
        over = true;
        file.close();
    }

    private void take(byte next, LineReceiver receiver) {
        if (next == '\n') {
            deliver(length, true, receiver);
            return;
        }
        if (length == MAX_LINE) {
            deliver(wholeCharacters(next), false, receiver);
        }
        if (length == line.length) {
            line = Arrays.copyOf(line, 2 * length);
        }
        line[length++] = next;
    }

    /** How much of a full line can go without what may be the beginning of a character. */
    private int wholeCharacters(byte next) {
        int end = length;
        if (isContinuation(next)) {
            end--;
            for (int most = 2; most > 0 && isContinuation(line[end]); most--) {
                end--;
            }
        }
        return end;
    }

    private static boolean isContinuation(byte part) {
        return (part & 0xc0) == 0x80;
    }

    private void deliver(int count, boolean last, LineReceiver receiver) {
        receiver.take(job, new String(line, 0, count, StandardCharsets.UTF_8), last);
        System.arraycopy(line, count, line, 0, length - count);
        length -= count;
    }
}
