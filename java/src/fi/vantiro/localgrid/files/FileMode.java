package fi.vantiro.localgrid.files;

import java.io.IOException;
import java.nio.ByteBuffer;
import java.nio.ByteOrder;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.zip.CRC32;
import java.util.zip.ZipEntry;

/** The permissions of a file in an archive: the extra field "ASi Unix" of its entry. */
public final class FileMode {
    /** The type of an ordinary file. */
    public static final int REGULAR = 0100000;

    private static final short FIELD = 0x756e;
    private static final int PERMISSIONS = 0777;
    private static final int HEADER = 4;
    private static final int CHECKSUM = 4;
    /** Mode, length of the link's target, user and group. */
    private static final int REST = 10;

    private FileMode() {}

    /** The type and permissions of a file. */
    public static int of(Path file) throws IOException {
        return (Integer) Files.getAttribute(file, "unix:mode");
    }

    /** The extra field that holds a mode. */
    public static byte[] field(int mode) {
        ByteBuffer rest = buffer(REST).putShort((short) mode);
        CRC32 crc = new CRC32();
        crc.update(rest.array());
        return buffer(HEADER + CHECKSUM + REST)
                .putShort(FIELD)
                .putShort((short) (CHECKSUM + REST))
                .putInt((int) crc.getValue())
                .put(rest.array())
                .array();
    }

    /** Gives a file the permissions that its entry has, if it has any. */
    static void restore(ZipEntry entry, Path file) throws IOException {
        ByteBuffer extra = entry.getExtra() == null ? buffer(0) : wrap(entry.getExtra());
        while (extra.remaining() >= HEADER) {
            short field = extra.getShort();
            int next = extra.getShort() + extra.position();
            if (field == FIELD && next <= extra.limit()
                    && next >= extra.position() + CHECKSUM + 2) {
                int mode = extra.getShort(extra.position() + CHECKSUM) & PERMISSIONS;
                Files.setAttribute(file, "unix:mode", mode);
            }
            extra.position(Math.min(Math.max(next, extra.position()), extra.limit()));
        }
    }

    private static ByteBuffer buffer(int size) {
        return wrap(new byte[size]);
    }

    private static ByteBuffer wrap(byte[] bytes) {
        return ByteBuffer.wrap(bytes).order(ByteOrder.LITTLE_ENDIAN);
    }
}
