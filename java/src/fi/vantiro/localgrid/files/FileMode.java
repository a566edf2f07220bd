package fi.vantiro.localgrid.files;

import java.io.IOException;
import java.nio.ByteBuffer;
import java.nio.ByteOrder;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.zip.CRC32;
import java.util.zip.ZipEntry;

/** The permissions of a file in an archive: the extra field "ASi Unix" of its entry. */
final class FileMode {
    private static final short FIELD = 0x756e;
    private static final int PERMISSIONS = 0777;
    private static final int HEADER = 4;
    private static final int CHECKSUM = 4;
    /** Mode, length of the link's target, user and group. */
    private static final int REST = 10;

    private FileMode() {}

    static void write(Path file, ZipEntry entry) throws IOException {
        ByteBuffer rest = buffer(REST).putShort(((Integer) mode(file)).shortValue());
        CRC32 crc = new CRC32();
        crc.update(rest.array());
        entry.setExtra(buffer(HEADER + CHECKSUM + REST)
                               .putShort(FIELD)
                               .putShort((short) (CHECKSUM + REST))
                               .putInt((int) crc.getValue())
                               .put(rest.array())
                               .array());
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

    private static Object mode(Path file) throws IOException {
        return Files.getAttribute(file, "unix:mode");
    }

    private static ByteBuffer buffer(int size) {
        return wrap(new byte[size]);
    }

    private static ByteBuffer wrap(byte[] bytes) {
        return ByteBuffer.wrap(bytes).order(ByteOrder.LITTLE_ENDIAN);
    }
}
