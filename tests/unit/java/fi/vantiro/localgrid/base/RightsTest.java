package fi.vantiro.localgrid.base;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertFalse;

import java.nio.ByteBuffer;
import java.nio.ByteOrder;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.Arrays;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.io.TempDir;

/** Whose rights a program has, by what the kernel says of it. */
class RightsTest {
    @TempDir Path folder;

    private Path vector(long... words) throws Exception {
        boolean wide = "64".equals(System.getProperty("sun.arch.data.model"));
        ByteBuffer bytes = ByteBuffer.allocate(8 * words.length).order(ByteOrder.nativeOrder());
        for (long word : words) {
            if (wide) {
                bytes.putLong(word);
            } else {
                bytes.putInt((int) word);
            }
        }
        return Files.write(folder.resolve("auxv"), Arrays.copyOf(bytes.array(), bytes.position()));
    }

    private Path status(String uids, String gids) throws Exception {
        return Files.write(folder.resolve("status"),
                Arrays.asList("Name:\tx", "Uid:\t" + uids, "Gid:\t" + gids));
    }

    @Test
    void areBorrowedUnlessTheKernelSaysOtherwise() throws Exception {
        Path same = status("7\t7\t7\t7", "8\t8\t8\t8");
        assertFalse(Rights.areBorrowed(vector(6, 4096, 23, 0, 0, 0), same));
        assertEquals(true, Rights.areBorrowed(vector(6, 4096, 23, 1, 0, 0), same), "AT_SECURE");
        assertEquals(true, Rights.areBorrowed(vector(6, 4096, 0, 0), same), "it is not told");
        assertEquals(true, Rights.areBorrowed(vector(6), same), "cut short");
        assertEquals(true, Rights.areBorrowed(folder.resolve("none"), same), "no /proc");
        assertEquals(true, Rights.areBorrowed(vector(23, 0), folder.resolve("none")), "no status");
        assertEquals(true, Rights.areBorrowed(vector(23, 0), status("7\t0\t7\t7", "8\t8\t8\t8")));
        assertEquals(true, Rights.areBorrowed(vector(23, 0), status("7\t7\t7\t7", "8\t0\t8\t8")));
    }
}
