package fi.vantiro.localgrid.base;

/** The result codes of the grid; -11 to -25 are left to the native library. */
public enum Status {
    OK(0, "OK"),
    IO_ERROR(-1, "reading or writing failed"),
    BAD_SETTINGS(-2, "the settings are missing or wrong"),
    BAD_PASSWORD(-3, "the password is missing or wrong"),
    WRONG_STATE(-4, "the operation does not fit the present state"),
    JOB_FAILED(-5, "at least one job failed"),
    NO_SUCH_BUNDLE(-6, "there is no such bundle"),
    BAD_ARCHIVE(-7, "the archive is damaged, altered or unsafe"),
    NOT_FOUND(-8, "a file or directory is missing"),
    STOPPED(-9, "the project was stopped"),
    UNKNOWN_VALUE(-10, "the value is not one of the known ones");

    private final int code;
    private final String text;

    Status(int code, String text) {
        this.code = code;
        this.text = text;
    }

    /** The number that callers see. */
    public int code() {
        return code;
    }

    /** The text of any result code, known or not. */
    public static String describe(int code) {
        for (Status status : values()) {
            if (status.code == code) {
                return status.text;
            }
        }
        return "unknown status code " + code;
    }
}
