package fi.vantiro.localgrid;

import java.io.ByteArrayOutputStream;
import java.io.Closeable;
import java.io.IOException;
import java.nio.ByteBuffer;
import java.nio.channels.FileChannel;
import java.nio.charset.StandardCharsets;
import java.nio.file.Path;
import java.util.function.Consumer;

/** Hands on the lines of a file while another process writes it. */
final class LineFollower implements Closeable {
    /** A longer line is handed on in pieces, so that no output can fill the memory. */
    private static final int MAX_LINE = 1 << 16;

    private final FileChannel file;
    private final Consumer<String> lines;
    private final ByteBuffer buffer = ByteBuffer.allocate(1 << 13);
    private final ByteArrayOutputStream line = new ByteArrayOutputStream();

    LineFollower(Path path, Consumer<String> lines) throws IOException {
        this.file = FileChannel.open(path);
        this.lines = lines;
    }

    /** Hands on the lines that were completed since the last call. */
    void poll() throws IOException {
        while (file.read(buffer) > 0) {
            buffer.flip();
            while (buffer.hasRemaining()) {
                byte next = buffer.get();
                if (next != '\n') {
                    line.write(next);
                }
                if (next == '\n' || line.size() == MAX_LINE) {
                    deliver();
                }
            }
            buffer.clear();
        }
    }

    /** Hands on the rest, also a last line without its end. */
    void finish() throws IOException {
        poll();
        if (line.size() > 0) {
            deliver();
        }
    }

    private void deliver() {
        lines.accept(new String(line.toByteArray(), StandardCharsets.UTF_8));
        line.reset();
    }

    @Override
    public void close() throws IOException {
        file.close();
    }
}
