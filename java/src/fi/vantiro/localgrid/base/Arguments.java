package fi.vantiro.localgrid.base;

import java.nio.file.Path;
import java.nio.file.Paths;
import java.util.Collection;
import java.util.HashMap;
import java.util.LinkedHashMap;
import java.util.Map;

/** Checks of what callers hand in. */
public final class Arguments {
    private static final int MAX_TOLD = 200;

    private Arguments() {}

    /** The value itself, which must not be null. */
    public static <T> T required(T value, String what) {
        if (value == null) {
            throw new IllegalArgumentException(what + " must not be null");
        }
        return value;
    }

    /** The list itself; neither it nor an element may be null. */
    public static String[] list(String[] values, String what) {
        required(values, what);
        for (int i = 0; i < values.length; i++) {
            required(values[i], what + "[" + i + "]");
        }
        return values;
    }

    public static boolean isEmpty(String text) {
        return text == null || text.isEmpty();
    }

    public static String orEmpty(String text) {
        return text == null ? "" : text;
    }

    /** A text that may be long, or null, cut in its middle to a length that can be read. */
    public static String shortened(String text) {
        return text == null || text.length() <= MAX_TOLD ? text
                                                         : text.substring(0, MAX_TOLD / 2) + " ... "
                        + text.substring(text.length() - MAX_TOLD / 2);
    }

    /** What is thrown for a value that cannot be meant. */
    public static IllegalArgumentException bad(String what, String value) {
        return new IllegalArgumentException(what + ": " + shortened(value));
    }

    /** A path with the meaning it has now, wherever the current directory moves later. */
    public static Path path(String text) {
        return Paths.get(NativeText.checked(required(text, "a path"))).toAbsolutePath().normalize();
    }

    /** The relative path of a file that stays below the directory it is meant for. */
    public static String inside(String text) {
        Path path = Paths.get(NativeText.checked(required(text, "a file name"))).normalize();
        if (path.isAbsolute() || path.startsWith("..") || path.toString().isEmpty()
                || text.endsWith("/") || text.endsWith("/.")) {
            throw bad("not the name of a file below the working directory", text);
        }
        return path.toString();
    }

    /** The value of a whole number. */
    public static int number(String text) {
        try {
            return Integer.parseInt(text);
        } catch (NumberFormatException e) {
            throw bad("not a number", text);
        }
    }

    /** The value of a flag. */
    public static boolean flag(String text) {
        if (!text.matches("0|1|false|true")) {
            throw bad("neither 0 nor 1", text);
        }
        return text.equals("1") || text.equals("true");
    }

    /** The "key=value" items of a list, in their order. */
    public static Map<String, String> items(String[] items) {
        Map<String, String> values = new LinkedHashMap<>();
        for (String item : list(items, "parameters")) {
            int split = item.indexOf('=');
            if (split < 1) {
                throw bad("not of the form key=value", item);
            }
            values.put(item.substring(0, split), item.substring(split + 1));
        }
        return values;
    }

    /** The name of an environment variable for a key of any characters. */
    public static String variable(String prefix, String key) {
        return prefix + key.replaceAll("[^A-Za-z0-9_]", "_");
    }

    /** Fails when two keys would be one variable. */
    public static void checkVariables(String prefix, Collection<String> keys) {
        Map<String, String> known = new HashMap<>();
        for (String key : keys) {
            String other = known.put(variable(prefix, key), key);
            if (other != null) {
                throw bad(
                        other + " and another key are one variable, " + variable(prefix, key), key);
            }
        }
    }
}
