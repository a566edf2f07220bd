package fi.vantiro.localgrid;

import java.util.Arrays;
import java.util.List;
import java.util.Locale;

/** The names of the machine that the grid runs on. */
final class Platforms {
    private static final String SYSTEM = System.getProperty("os.name").toLowerCase(Locale.ROOT);
    private static final List<String> NAMES =
            Arrays.asList("", "any", SYSTEM, SYSTEM + "-" + System.getProperty("os.arch"));

    private Platforms() {}

    /** Whether files for a platform of that name can be used here; "" and null mean any. */
    static boolean isThis(String platform) {
        return platform == null || NAMES.contains(platform.toLowerCase(Locale.ROOT));
    }
}
