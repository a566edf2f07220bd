package fi.vantiro.localgrid.settings;

import fi.vantiro.localgrid.base.Arguments;
import fi.vantiro.localgrid.base.GridException;
import fi.vantiro.localgrid.base.Log;
import fi.vantiro.localgrid.base.Rights;
import fi.vantiro.localgrid.base.Status;
import java.io.IOException;
import java.io.Reader;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.nio.file.LinkOption;
import java.nio.file.Path;
import java.util.Arrays;
import java.util.LinkedHashMap;
import java.util.List;
import java.util.Map;
import java.util.Properties;
import java.util.logging.Level;

/** The settings of one grid, checked once and fixed from then on. */
public final class Settings {
    public static final String HOME = "grid.home";
    public static final String LOGIN = "user.login";
    public static final String TEMP_DIR = "temp.dir";
    public static final String PROCESSORS = "grid.processors";
    public static final String LOG_LEVEL = "log.level";
    public static final String DOWNLOAD_DIR = "download.dir";
    public static final String UNZIP_DIR = "unzip.dir";
    public static final String JOB_TIMEOUT = "job.timeout";
    public static final String KEEP_WORK = "keep.work";
    private static final String JOB_LAUNCHER = "job.launcher";
    private static final String JOB_CANCEL = "job.cancel";
    private static final String JOB_CANCEL_WAIT = "job.cancel.wait";
    private static final int CANCEL_SECONDS = 5;
    private static final String PASSWORD = "grid.password";

    private static final List<String> KEYS =
            Arrays.asList(HOME, LOGIN, TEMP_DIR, PROCESSORS, LOG_LEVEL, DOWNLOAD_DIR, UNZIP_DIR,
                    JOB_TIMEOUT, KEEP_WORK, JOB_LAUNCHER, JOB_CANCEL, JOB_CANCEL_WAIT, PASSWORD);
    private static final String PLUGIN = "plugin.";
    private static final String DEFAULT_FILE = "vantiro.properties";
    /** Names the settings file of any program, in the place of the default one. */
    private static final String VARIABLE = "VANTIRO_SETTINGS";

    public final Path home;
    public final String login;
    public final Path tempDir;
    public final int processors;
    public final Level logLevel;
    public final Path downloadDir;
    public final Path unzipDir;
    public final int jobTimeout;
    public final boolean keepWork;
    /** What is put before each job's command to have it run elsewhere; empty for nothing. */
    public final String jobLauncher;
    /** What ends a job that a launcher left behind; empty for nothing. */
    public final String jobCancel;
    /** Seconds that a launcher and the line that cancels have to end by themselves. */
    public final int jobCancelWait;
    /** The values of each plug-in by its name, its class among them. */
    public final Map<String, Map<String, String>> plugins = new LinkedHashMap<>();

    private Settings(Properties values) throws GridException {
        checkKeys(values);
        String homeText = text(values, HOME, "");
        home = homeText.isEmpty() ? userHome().resolve(".vantiro-grid") : Arguments.path(homeText);
        login = text(values, LOGIN, userName());
        tempDir = Arguments.path(text(values, TEMP_DIR, System.getProperty("java.io.tmpdir")));
        if (!Files.isDirectory(tempDir)) {
            throw bad(TEMP_DIR, tempDir.toString(), "an existing directory");
        }
        int count = number(values, PROCESSORS, 0);
        processors = count == 0 ? Runtime.getRuntime().availableProcessors() : count;
        logLevel = Log.level(text(values, LOG_LEVEL, Level.WARNING.getName()));
        downloadDir = directory(values, DOWNLOAD_DIR);
        unzipDir = directory(values, UNZIP_DIR);
        jobTimeout = number(values, JOB_TIMEOUT, 0);
        keepWork = flag(values, KEEP_WORK);
        jobLauncher = text(values, JOB_LAUNCHER, "");
        jobCancel = text(values, JOB_CANCEL, "");
        jobCancelWait = number(values, JOB_CANCEL_WAIT, CANCEL_SECONDS);
    }

    /** What holds when nothing is set. */
    public static Settings defaults() throws GridException {
        return checked(new Properties());
    }

    private static Settings checked(Properties values) throws GridException {
        try {
            return new Settings(values);
        } catch (IllegalArgumentException e) {
            throw new GridException(Status.BAD_SETTINGS, e.getMessage());
        }
    }

    /**
     * The settings of the file that the environment names, of the default file, or none. Whoever
     * calls a set-user-id program chooses both, and so they are not for it.
     */
    public static Settings load() throws GridException {
        if (Rights.areBorrowed()) {
            return defaults();
        }
        boolean absent = Files.notExists(Arguments.path(DEFAULT_FILE), LinkOption.NOFOLLOW_LINKS);
        return checked(
                absent || named() ? surroundings(null) : unlocked(read(DEFAULT_FILE, ""), null));
    }

    private static boolean named() {
        return !Arguments.isEmpty(System.getenv(VARIABLE)) && !Rights.areBorrowed();
    }

    /** The values of the file that the environment names. */
    private static Properties surroundings(String password) throws GridException {
        return named() ? unlocked(read(System.getenv(VARIABLE), " named by " + VARIABLE), password)
                       : new Properties();
    }

    /**
     * The settings of a file; a file with a password wants the same one, null when none is known.
     */
    public static Settings load(String file, String password) throws GridException {
        return checked(unlocked(read(file, ""), password));
    }

    /**
     * Single values laid over those of a further file, or else of the one that the environment
     * names; null or "" leaves a value as it is there, and so does 0 for a number.
     */
    public static Settings of(Map<String, String> values, String furtherFile, String password)
            throws GridException {
        Properties all = Arguments.isEmpty(furtherFile) ? surroundings(password)
                                                        : unlocked(read(furtherFile, ""), password);
        values.forEach((key, value) -> {
            if (!Arguments.isEmpty(value) && !(value.equals("0") && all.containsKey(key))) {
                all.setProperty(key, value);
            }
        });
        return checked(all);
    }

    private static Properties read(String file, String origin) throws GridException {
        Path path = Arguments.path(file);
        Properties values = new Properties();
        try (Reader reader = Files.newBufferedReader(path, StandardCharsets.UTF_8)) {
            values.load(reader);
        } catch (IOException | IllegalArgumentException e) {
            String reason = e instanceof IOException
                    ? GridException.of((IOException) e).getMessage()
                    : e.getMessage();
            throw new GridException(Status.BAD_SETTINGS,
                    "cannot read settings file " + path + origin + ": " + reason);
        }
        return values;
    }

    private static Properties unlocked(Properties values, String password) throws GridException {
        String wanted = values.getProperty(PASSWORD);
        if (wanted != null && Arguments.isEmpty(password)) {
            throw new GridException(Status.BAD_PASSWORD, "the settings file needs a password");
        }
        if (wanted != null && !wanted.equals(password)) {
            throw new GridException(Status.BAD_PASSWORD, "wrong password for the settings file");
        }
        return values;
    }

    /** A user whom the system does not know by name is "?" to Java. */
    private static Path userHome() throws GridException {
        for (String home : new String[] {System.getProperty("user.home"), System.getenv("HOME")}) {
            if (home != null && home.startsWith("/")) {
                return Arguments.path(home);
            }
        }
        throw new GridException(Status.BAD_SETTINGS,
                "this user has no home directory; set " + HOME + ", or the variable HOME");
    }

    private static String userName() {
        for (String name : new String[] {System.getProperty("user.name"), System.getenv("USER")}) {
            if (!Arguments.isEmpty(name) && !name.equals("?")) {
                return name;
            }
        }
        return "unknown";
    }

    private void checkKeys(Properties values) throws GridException {
        for (String key : values.stringPropertyNames()) {
            String[] parts = key.split("\\.", 3);
            if (key.startsWith(PLUGIN) && parts.length == 3 && !parts[1].isEmpty()) {
                plugins.computeIfAbsent(parts[1], name -> new LinkedHashMap<>())
                        .put(parts[2], values.getProperty(key));
            } else if (!KEYS.contains(key)) {
                throw new GridException(Status.BAD_SETTINGS,
                        "unknown setting " + Arguments.shortened(key) + "; the known ones are "
                                + KEYS + " and " + PLUGIN + "<name>.<key>");
            }
        }
    }

    private static String text(Properties values, String key, String fallback) {
        String value = values.getProperty(key, "").trim();
        return value.isEmpty() ? fallback : value;
    }

    private static Path directory(Properties values, String key) {
        String value = text(values, key, "");
        return value.isEmpty() ? null : Arguments.path(value);
    }

    private static int number(Properties values, String key, int fallback) throws GridException {
        String value = text(values, key, String.valueOf(fallback));
        try {
            int number = Integer.parseInt(value);
            if (number >= 0) {
                return number;
            }
        } catch (NumberFormatException e) {
            throw bad(key, value, "a number");
        }
        throw bad(key, value, "a number of 0 or more");
    }

    private static boolean flag(Properties values, String key) throws GridException {
        switch (text(values, key, "0")) {
            case "0":
            case "false":
                return false;
            case "1":
            case "true":
                return true;
            default:
                throw bad(key, values.getProperty(key), "0 or 1");
        }
    }

    private static GridException bad(String key, String value, String wanted) {
        return new GridException(Status.BAD_SETTINGS,
                "setting " + key + "=" + Arguments.shortened(value) + " is not " + wanted);
    }
}
