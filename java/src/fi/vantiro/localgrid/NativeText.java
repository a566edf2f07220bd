package fi.vantiro.localgrid;

import java.nio.ByteBuffer;
import java.nio.CharBuffer;
import java.nio.charset.CharacterCodingException;
import java.nio.charset.Charset;

/** Text for the operating system, in the character set of its locale. */
final class NativeText {
    private static final Charset CHARSET = Charset.forName(
            System.getProperty("sun.jnu.encoding", Charset.defaultCharset().name()));

    private NativeText() {}

    static Charset charset() {
        return CHARSET;
    }

    /** The bytes of a text; one that the locale cannot hold, or that has a NUL, is refused. */
    static byte[] bytes(String text) {
        try {
            ByteBuffer bytes = CHARSET.newEncoder().encode(CharBuffer.wrap(text));
            byte[] exact = new byte[bytes.remaining()];
            bytes.get(exact);
            if (text.indexOf('\0') < 0) {
                return exact;
            }
        } catch (CharacterCodingException e) {
            throw new IllegalArgumentException("the character set " + CHARSET
                            + " of the program's locale cannot hold the text " + text,
                    e);
        }
        throw new IllegalArgumentException("there is a NUL in the text " + text);
    }
}
