package fi.vantiro.localgrid.base;

import java.io.IOException;
import java.nio.ByteBuffer;
import java.nio.ByteOrder;
import java.nio.file.Files;
import java.nio.file.Path;
import java.nio.file.Paths;

/** Whose rights the program has. */
public final class Rights {
    public static final String WHY_NO_JOBS =
            "a program that has other rights than its caller runs no jobs (one that is set-user-id "
            + "or set-group-id, has file capabilities, or hides its /proc/self/auxv): they would "
            + "have its rights, in its caller's environment; run them from a program without";

    private static final int SECURE = 23;

    private Rights() {}

    /**
     * Whether they are others than its caller's, as those of a set-user-id program are. Where that
     * cannot be known they are.
     */
    public static boolean areBorrowed() {
        return areBorrowed(Paths.get("/proc/self/auxv"), Paths.get("/proc/self/status"));
    }

    static boolean areBorrowed(Path auxiliaryVector, Path status) {
        try {
            return isSecure(Files.readAllBytes(auxiliaryVector)) || haveTwoOwners(status);
        } catch (IOException | RuntimeException e) {
            return true;
        }
    }

    /** What the kernel said when the program began: AT_SECURE, which counts capabilities too. */
    private static boolean isSecure(byte[] vector) {
        ByteBuffer words = ByteBuffer.wrap(vector).order(ByteOrder.nativeOrder());
        boolean wide = "64".equals(System.getProperty("sun.arch.data.model"));
        while (words.hasRemaining()) {
            long type = wide ? words.getLong() : words.getInt();
            long value = wide ? words.getLong() : words.getInt();
            if (type == SECURE) {
                return value != 0;
            }
        }
        return true;
    }

    private static boolean haveTwoOwners(Path status) throws IOException {
        for (String line : Files.readAllLines(status)) {
            String[] words = line.split("\\s+");
            if (words[0].matches("[UG]id:") && !words[1].equals(words[2])) {
                return true;
            }
        }
        return false;
    }
}
