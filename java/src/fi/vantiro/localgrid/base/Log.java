package fi.vantiro.localgrid.base;

import java.util.Arrays;
import java.util.List;
import java.util.Locale;
import java.util.logging.ConsoleHandler;
import java.util.logging.Handler;
import java.util.logging.Level;
import java.util.logging.Logger;

/** The grid's log on standard error, apart from the host program's own logging. */
public final class Log {
    public static final String NAME = "fi.vantiro.localgrid";

    private static final List<Level> LEVELS = Arrays.asList(Level.OFF, Level.SEVERE, Level.WARNING,
            Level.INFO, Level.CONFIG, Level.FINE, Level.FINER, Level.FINEST, Level.ALL);
    private static final Logger LOGGER = Logger.getLogger(NAME);
    private static final Handler HANDLER = new ConsoleHandler();

    static {
        LOGGER.setUseParentHandlers(false);
        LOGGER.addHandler(HANDLER);
    }

    private Log() {}

    public static Level level(String name) throws GridException {
        for (Level level : LEVELS) {
            if (level.getName().equals(name.toUpperCase(Locale.ROOT))) {
                return level;
            }
        }
        throw new GridException(Status.UNKNOWN_VALUE,
                "unknown log level " + Arguments.shortened(name) + "; the known ones are "
                        + LEVELS);
    }

    public static void setLevel(Level level) {
        HANDLER.setLevel(level);
        LOGGER.setLevel(level);
    }
}
