package fi.vantiro.localgrid.process;

import java.io.IOException;
import java.io.InputStream;

/** Takes messages from a stream in which, now and then, a stranger may have written too. */
public final class MessageReader {
    /** What a pipe takes in one piece; the keeper sends nothing longer. */
    private static final int LONGEST = 4096;

    private final InputStream stream;
    private final byte[] buffer = new byte[LONGEST];
    private int position;
    private int filled;
    /** The fields of the message that was read last, each with the NUL that ends it. */
    private final byte[] fields = new byte[LONGEST];
    private int length;
    private boolean cut;

    public MessageReader(InputStream stream) {
        this.stream = stream;
    }

    /** Waits for the next message and takes it, which needs no memory; false when none follows. */
    public boolean next() throws IOException {
        length = 0;
        cut = false;
        boolean fieldEnded = true;
        for (int next = read(); next >= 0; next = read()) {
            if (next == 0 && fieldEnded) {
                if (length > 0) {
                    return true;
                }
                // Those before a message end whatever a stranger has written in between.
                continue;
            }
            fieldEnded = next == 0;
            if (length < LONGEST) {
                fields[length++] = (byte) next;
            } else {
                cut = true;
            }
        }
        return false;
    }

    private int read() throws IOException {
        if (position == filled) {
            filled = Math.max(stream.read(buffer), 0);
            position = 0;
        }
        return position < filled ? buffer[position++] & 0xff : -1;
    }

    /** The message that was taken; in a full heap this can be tried again. */
    public Message message() {
        return Message.parse(fields, length, cut);
    }
}
