package fi.vantiro.localgrid.base;

import static org.junit.jupiter.api.Assertions.assertFalse;
import static org.junit.jupiter.api.Assertions.assertTrue;

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
        assertFalse(Rights.wereBorrowed(vector(6, 4096, 23, 0, 0, 0)));
        assertTrue(Rights.wereBorrowed(vector(6, 4096, 23, 1, 0, 0)), "AT_SECURE");
        assertTrue(Rights.wereBorrowed(vector(6, 4096, 0, 0)), "it is not told");
        assertTrue(Rights.wereBorrowed(vector(6)), "cut short");
        assertTrue(Rights.wereBorrowed(folder.resolve("none")), "no /proc");
        assertFalse(Rights.haveTwoOwners(status("7\t7\t7\t7", "8\t8\t8\t8")));
        assertTrue(Rights.haveTwoOwners(status("7\t0\t7\t7", "8\t8\t8\t8")));
        assertTrue(Rights.haveTwoOwners(status("7\t7\t7\t7", "8\t0\t8\t8")));
        assertTrue(Rights.haveTwoOwners(folder.resolve("none")), "no status");
    }
}
