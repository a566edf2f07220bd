package fi.vantiro.localgrid;

import java.util.Arrays;
import java.util.List;
import java.util.stream.Collectors;

/** The settings of a parallel-each run by the names that a single call gives them. */
public enum PeachKey {
    NAME("name", 1, (d, v) -> d.name = v[0]),
    STATE_DIR("stateDir", 1, (d, v) -> d.stateDir = Arguments.path(v[0])),
    DESCRIPTION("description", 1, (d, v) -> d.description = v[0]),
    MESSAGES("messages", 1, (d, v) -> d.messages = flag(v[0])),
    PRIORITY("priority", 1, (d, v) -> d.priority = priority(v[0])),
    PROJECT_ID("projectId", 1, (d, v) -> d.projectId = number(v[0])),
    RESULT_FILE("resultFile", 1, (d, v) -> d.resultFile = Arguments.path(v[0])),
    JOBS("jobs", 1, (d, v) -> d.jobs = positive(v[0])),
    ALLOW_PARTIAL("allowPartial", 1, (d, v) -> d.allowPartial = flag(v[0])),
    REMOVE("remove", 1, (d, v) -> d.remove = flag(v[0])),
    CLEANUP("cleanup", 1, (d, v) -> d.cleanup = flag(v[0])),
    CLOSE("close", 1, (d, v) -> d.close = flag(v[0])),
    STREAM("stream", 1, (d, v) -> d.stream = flag(v[0])),

    SOURCE_FILE("sourceFile", 1, (d, v) -> d.sources.add(InputFile.in("", v[0]))),
    SOURCE_EXTRA("sourceExtra", "=", (d, v) -> d.sourceExtras.put(key(v[0]), v[1])),

    EXE_BUNDLE_NAME("exeBundleName", 1, (d, v) -> d.exeBundle = fileName(v[0])),
    EXECUTABLE("executable", 1, (d, v) -> d.executable = v[0].trim()),
    EXE_SKIP_DIGEST("exeSkipDigest", 1, (d, v) -> d.exe.skipDigest = flag(v[0])),
    EXE_FILE("exeFile", 4, (d, v) -> {
        InputFile file = InputFile.named(v[0], v[1], v[3]);
        if (Platforms.isThis(v[2])) {
            d.exe.add(file);
        }
    }),
    EXE_EXTRA("exeExtra", "=", (d, v) -> d.exe.extras.put(key(v[0]), v[1])),
    EXE_IMPORT("exeImport", 1, (d, v) -> d.exeImports.add(v[0])),
    OUTPUT_FILE("outputFile", 1, (d, v) -> d.outputs.add(WorkDirectory.pattern(v[0]))),

    DATA_BUNDLE("dataBundle", 1, (d, v) -> d.newDataBundle(v[0])),
    DATA_SKIP_DIGEST("dataSkipDigest", 1, (d, v) -> d.data().skipDigest = flag(v[0])),
    DATA_FILE("dataFile", 1, (d, v) -> d.addDataFile("", v[0])),
    DATA_FILE_WITH_DIR("dataFileWithDir", 2, (d, v) -> d.addDataFile(v[1], v[0])),
    DATA_EXTRA("dataExtra", "=", (d, v) -> d.data().extras.put(key(v[0]), v[1])),
    DATA_COPY("dataCopy", 1, (d, v) -> d.data().copy = flag(v[0])),

    JOB_SKIP_DIGEST("jobSkipDigest", 1, (d, v) -> d.jobInputs.skipDigest = flag(v[0])),
    JOB_FILE_NAMES("jobFileNames", PeachKey.ANY, (d, v) -> d.setJobFileNames(v)),
    JOB_FILE("jobFile", PeachKey.ANY, (d, v) -> d.addJobFiles("", v)),
    JOB_FILE_WITH_DIR("jobFileWithDir", PeachKey.ANY,
            (d, v) -> d.addJobFiles(v[0], Arrays.copyOfRange(v, 1, v.length))),
    JOB_EXTRA("jobExtra", "=", (d, v) -> d.jobInputs.extras.put(key(v[0]), v[1])),

    PARAM_SKIP_DIGEST("paramSkipDigest", 1, (d, v) -> d.params.skipDigest = flag(v[0])),
    PARAM_FILE("paramFile", 1, (d, v) -> d.params.add(InputFile.in("", v[0]))),
    PARAM_FILE_WITH_DIR("paramFileWithDir", 2, (d, v) -> d.params.add(InputFile.in(v[1], v[0]))),
    PARAM_FILE_WITH_TARGET(
            "paramFileWithTarget", 2, (d, v) -> d.params.add(InputFile.named(v[0], v[1], ""))),
    PARAM_EXTRA("paramExtra", "=", (d, v) -> d.params.extras.put(key(v[0]), v[1])),
    PARAM_EXTERNAL_RESOURCE("paramExternalResource", 1, (d, v) -> d.addExternalResource(v[0])),
    PARAM_COPY("paramCopy", 1, (d, v) -> d.params.copy = flag(v[0])),

    PROJECT_PARAM("projectParam", "=", (d, v) -> d.projectParams.put(key(v[0]), v[1]));

    private static final int ANY = -1;

    private final String key;
    /** How many values the setting takes in a list; left-out ones are empty. */
    private final int values;
    private final String separator;
    private final Setter setter;

    @FunctionalInterface
    private interface Setter {
        void set(PeachDescription description, String[] values);
    }

    PeachKey(String key, int values, Setter setter) {
        this.key = key;
        this.values = values;
        this.separator = ",";
        this.setter = setter;
    }

    PeachKey(String key, String separator, Setter setter) {
        this.key = key;
        this.values = 2;
        this.separator = separator;
        this.setter = setter;
    }

    /** Puts values into a description. */
    public void set(PeachDescription description, String... given) {
        setter.set(description, Arguments.list(given, key).clone());
    }

    /** Puts a "key=value" argument of a single call into a description. */
    public static void setArgument(PeachDescription description, String argument) {
        String[] parts = Arguments.required(argument, "an argument").split("=", 2);
        for (PeachKey known : values()) {
            if (known.key.equals(parts[0]) && parts.length == 2) {
                known.set(description, known.split(parts[1]));
                return;
            }
        }
        List<String> keys = Arrays.stream(values()).map(k -> k.key).collect(Collectors.toList());
        throw new IllegalArgumentException("not of the form key=value with a known key: " + argument
                + "; known keys: " + keys);
    }

    private String[] split(String value) {
        if (values == 1) {
            return new String[] {value};
        }
        String[] items = value.split(separator, values);
        if (values == ANY || items.length == values) {
            return items;
        }
        int given = items.length;
        items = Arrays.copyOf(items, values);
        Arrays.fill(items, given, values, "");
        return items;
    }

    private static String key(String text) {
        if (text.isEmpty()) {
            throw new IllegalArgumentException("a key must not be empty");
        }
        return text;
    }

    private static String fileName(String text) {
        if (text.contains("/")) {
            throw new IllegalArgumentException("not a bundle's name: " + text);
        }
        return text;
    }

    private static boolean flag(String text) {
        switch (text) {
            case "0":
            case "false":
                return false;
            case "1":
            case "true":
                return true;
            default:
                throw new IllegalArgumentException("neither 0 nor 1: " + text);
        }
    }

    private static int number(String text) {
        try {
            return Integer.parseInt(text);
        } catch (NumberFormatException e) {
            throw new IllegalArgumentException("not a number: " + text, e);
        }
    }

    private static int positive(String text) {
        int number = number(text);
        if (number < 1) {
            throw new IllegalArgumentException("not a number of 1 or more: " + text);
        }
        return number;
    }

    private static int priority(String text) {
        switch (text) {
            case "low":
                return -10;
            case "normal":
                return 0;
            case "high":
                return 10;
            default:
                try {
                    return Integer.parseInt(text);
                } catch (NumberFormatException e) {
                    throw new IllegalArgumentException(
                            "the priority is low, normal, high or a number, not " + text, e);
                }
        }
    }
}
