package fi.vantiro.user;

import java.util.Arrays;

/** What the measured calls reach: methods that do nothing, so that the calling is what is timed. */
public class ManagementImpl {
    private static final String SHORT = text(10);
    private static final String LONG = text(10000);

    private static String text(int length) {
        char[] characters = new char[length];
        Arrays.fill(characters, 'x');
        return new String(characters);
    }

    public int initFile() {
        return 0;
    }

    public int open() {
        return 1;
    }

    public int getLastError(int value) {
        return value;
    }

    public int setStreamResults(int handle, boolean stream) {
        return 0;
    }

    public boolean actionWait(long milliseconds) {
        return true;
    }

    public int createProject(int session, int priority, String name) {
        return 1;
    }

    public boolean isFailed(int handle) {
        return true;
    }

    public long getUsedTime(int handle) {
        return handle;
    }

    public int setLogLevel(String level) {
        return 0;
    }

    public int setProjectParams(int project, String[] params) {
        return params.length;
    }

    public int createBundle(int handle, String s1, String s2, String s3, String s4, String s5,
            String s6, String s7, String s8, String s9, String[] first, String[] second) {
        return 0;
    }

    public String getUserLogin() {
        return SHORT;
    }

    public String getStatisticsString(int handle) {
        return LONG;
    }

    public int getResultFileCount(int handle) {
        return 1;
    }

    public String getResultFileName(int handle, int index) {
        return SHORT;
    }

    public PeachWrapper getPeachWrapper() {
        return new PeachWrapper();
    }

    /** A program of its own for one call, as a user without a library would have it. */
    public static void main(String[] arguments) {
        new ManagementImpl().setLogLevel(arguments[0]);
    }
}
