package fi.vantiro.localgrid.base;

import java.nio.charset.Charset;
import java.util.stream.Stream;

/** Text for the operating system, in the character set of its locale. */
public final class NativeText {
    private static final Charset CHARSET = Charset.forName(
            System.getProperty("sun.jnu.encoding", Charset.defaultCharset().name()));

    private NativeText() {}

    public static Charset charset() {
        return CHARSET;
    }

    /** The text itself; one that the locale cannot hold, or that has a NUL, is refused. */
    public static String checked(String text) {
        if (text.indexOf('\0') >= 0) {
            throw Arguments.bad("there is a NUL in a text", text.replace('\0', '?'));
        }
        if (!CHARSET.newEncoder().canEncode(text)) {
            throw Arguments.bad("the character set " + CHARSET + " of the program's locale ("
                            + locale() + ") cannot hold a text; LC_ALL=C.UTF-8 can hold any",
                    text);
        }
        return text;
    }

    /** The bytes of a text that passes the check. */
    public static byte[] bytes(String text) {
        return checked(text).getBytes(CHARSET);
    }

    private static String locale() {
        return Stream.of("LC_ALL", "LC_CTYPE", "LANG")
                .filter(name -> !Arguments.isEmpty(System.getenv(name)))
                .map(name -> name + "=" + System.getenv(name))
                .findFirst()
                .orElse("neither LC_ALL nor LANG is set");
    }
}
