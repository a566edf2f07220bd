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
            "a program that has other rights than its caller, as a set-user-id or set-group-id one "
            + "or one with file capabilities, runs no jobs: they would have its rights, in its "
            + "caller's environment. One that has given its rights up shows that with "
            + "prctl(PR_SET_DUMPABLE, 1)";

    private static final int SECURE = 23;

    private Rights() {}

    /** Once it was seen that they were not: a program that gives rights up hides that it had. */
    private static volatile boolean ownAtStart;

    /**
     * Whether they are others than its caller's, as those of a set-user-id program are. Where that
     * cannot be known they are.
     */
    public static boolean areBorrowed() {
        ownAtStart |= !wereBorrowed(Paths.get("/proc/self/auxv"));
        return !ownAtStart || haveTwoOwners(Paths.get("/proc/self/status"));
    }

    static boolean wereBorrowed(Path auxiliaryVector) {
        try {
            return isSecure(Files.readAllBytes(auxiliaryVector));
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

    static boolean haveTwoOwners(Path status) {
        try {
            for (String line : Files.readAllLines(status)) {
                String[] words = line.split("\\s+");
                if (words[0].matches("[UG]id:") && !words[1].equals(words[2])) {
                    return true;
                }
            }
            return false;
        } catch (IOException | RuntimeException e) {
            return true;
        }
    }
}
