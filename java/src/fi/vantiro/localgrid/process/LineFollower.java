package fi.vantiro.localgrid.process;

import java.io.ByteArrayOutputStream;
import java.io.IOException;
import java.nio.ByteBuffer;
import java.nio.channels.FileChannel;
import java.nio.charset.StandardCharsets;
import java.nio.file.NoSuchFileException;
import java.nio.file.Path;
import java.util.function.Consumer;

/**
 * Hands on the lines of a file while another process writes it. What fails, as it may in a full
 * heap, can be tried again, and no byte is lost or read twice.
 */
public final class LineFollower {
    /** A longer line is handed on in pieces, so that no output can fill the memory. */
    private static final int MAX_LINE = 1 << 16;

    private final Path path;
    private final Consumer<String> lines;
    /** What was read and is not kept or handed on yet. */
    private final ByteBuffer buffer = (ByteBuffer) ByteBuffer.allocate(1 << 13).limit(0);
    private final ByteArrayOutputStream line = new ByteArrayOutputStream();
    private FileChannel file;

    public LineFollower(Path path, Consumer<String> lines) {
        this.path = path;
        this.lines = lines;
    }

    /** Hands on the lines that were completed since the last call. */
    public synchronized void poll() throws IOException {
        if (file == null && !open()) {
            return;
        }
        do {
            while (buffer.hasRemaining()) {
                take(buffer.get(buffer.position()));
                buffer.get();
            }
        } while (isFilled());
    }

    private boolean isFilled() throws IOException {
        buffer.clear();
        try {
            return file.read(buffer) > 0;
        } finally {
            buffer.flip();
        }
    }

    private void take(byte next) {
        if (next == '\n' || line.size() == MAX_LINE) {
            deliver();
        }
        if (next != '\n') {
            line.write(next);
        }
    }

    private boolean open() throws IOException {
        try {
            file = FileChannel.open(path);
            return true;
        } catch (NoSuchFileException e) {
            // The job has not begun.
            return false;
        }
    }

    /** Hands on the rest, also a last line without its end, and closes the file. */
    public synchronized void finish() throws IOException {
        poll();
        if (line.size() > 0) {
            deliver();
        }
        if (file != null) {
            file.close();
        }
    }

    private void deliver() {
        String text = new String(line.toByteArray(), StandardCharsets.UTF_8);
        lines.accept(text);
        line.reset();
    }
}
