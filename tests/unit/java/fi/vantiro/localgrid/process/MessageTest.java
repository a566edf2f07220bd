package fi.vantiro.localgrid.process;

import static org.junit.jupiter.api.Assertions.assertArrayEquals;
import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertThrows;
import static org.junit.jupiter.api.Assertions.assertTrue;

import java.io.ByteArrayInputStream;
import java.io.ByteArrayOutputStream;
import java.io.IOException;
import java.io.InputStream;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.nio.file.Paths;
import java.util.ArrayList;
import java.util.Arrays;
import java.util.List;
import org.junit.jupiter.api.Test;

/** The Java side of the protocol, by the same table as the keeper's. */
class MessageTest {
    private static final class Row {
        byte[] bytes;
        boolean written;
        final List<String> messages = new ArrayList<>();
    }

    private static byte[] unescaped(String text) {
        ByteArrayOutputStream bytes = new ByteArrayOutputStream();
        for (int i = 0; i < text.length(); i++) {
            if (text.charAt(i) != '\\') {
                bytes.write(text.charAt(i));
            } else if (text.charAt(++i) == 'x') {
                bytes.write(Integer.parseInt(text.substring(i + 1, i + 3), 16));
                i += 2;
            } else {
                bytes.write(text.charAt(i) == 'n' ? '\n' : 0);
            }
        }
        return bytes.toByteArray();
    }

    private static List<Row> table() throws IOException {
        List<Row> rows = new ArrayList<>();
        for (String line : Files.readAllLines(Paths.get(System.getProperty("unit.messages")))) {
            if (line.startsWith("<")) {
                Row row = new Row();
                row.written = line.startsWith("<>");
                row.bytes = unescaped(line.substring(line.indexOf(' ') + 1));
                rows.add(row);
            } else if (line.startsWith("= ")) {
                rows.get(rows.size() - 1)
                        .messages.add(
                                new String(unescaped(line.substring(2)), StandardCharsets.UTF_8));
            }
        }
        return rows;
    }

    /** As a pipe gives it: so many bytes at a time. */
    private static InputStream inPieces(byte[] bytes, int piece) {
        return new ByteArrayInputStream(bytes) {
            @Override
            public synchronized int read(byte[] to, int offset, int size) {
                return super.read(to, offset, Math.min(piece, size));
            }
        };
    }

    private static List<Message> read(byte[] bytes, int piece) throws IOException {
        MessageReader reader = new MessageReader(inPieces(bytes, piece));
        List<Message> messages = new ArrayList<>();
        while (reader.next()) {
            messages.add(reader.message());
        }
        return messages;
    }

    private static String text(Message message) {
        String fields = message.toString().replace("\n", "\\n");
        return message.trouble() == null ? fields : fields + " ! " + message.trouble();
    }

    @Test
    void isReadAsTheTableSays() throws IOException {
        List<Row> rows = table();
        assertTrue(rows.size() > 20);
        for (Row row : rows) {
            for (int piece : new int[] {1, 3, 4096}) {
                List<Message> messages = read(row.bytes, piece);
                assertEquals(row.messages.size(), messages.size(), row.messages.toString());
                for (int i = 0; i < messages.size(); i++) {
                    check(row.messages.get(i), messages.get(i));
                }
            }
        }
    }

    private static void check(String expected, Message message) {
        int mark = expected.indexOf(" ! ");
        String trouble = mark < 0 ? null : expected.substring(mark + 3);
        assertEquals(trouble, message.trouble(), expected);
        for (String field :
                expected.substring(0, mark < 0 ? expected.length() : mark).split("\\|")) {
            int equals = field.indexOf('=');
            String name = field.substring(0, Math.max(0, equals));
            assertEquals(field.substring(equals + 1), message.text(name), expected);
        }
    }

    @Test
    void isWrittenAsTheTableSays() throws IOException {
        int written = 0;
        for (Row row : table()) {
            if (row.written) {
                Message read = read(row.bytes, 4096).get(0);
                Message message = Message.of(read.text("kind"));
                for (String field : row.messages.get(0).split("\\|")) {
                    String name = field.substring(0, field.indexOf('='));
                    if (!name.equals("version") && !name.equals("kind")) {
                        message.with(name, field.substring(field.indexOf('=') + 1));
                    }
                }
                assertArrayEquals(row.bytes, message.bytes(), text(message));
                written++;
            }
        }
        assertTrue(written > 4);
    }

    @Test
    void isToldAndEndsWhenItIsTooLong() throws IOException {
        byte[] large = new byte[20_000];
        Arrays.fill(large, (byte) 'x');
        ByteArrayOutputStream bytes = new ByteArrayOutputStream();
        bytes.write(unescaped("\\0\\0version=1\\0kind=ended\\0job=5\\0why="));
        bytes.write(large);
        bytes.write(unescaped("\\0\\0\\0\\0version=1\\0kind=pong\\0\\0"));
        List<Message> messages = read(bytes.toByteArray(), 1000);
        assertEquals("it is too long", messages.get(0).trouble());
        assertEquals(5, messages.get(0).number("job"));
        assertTrue(messages.get(1).is("pong"));
    }

    @Test
    void hasNumbersOf64BitsOrNone() {
        assertEquals(1L << 40, Message.of("x").with("n", "1099511627776").number("n"));
        for (String wrong : new String[] {"", " 1", "0x1", "9223372036854775808", "-"}) {
            assertThrows(IllegalArgumentException.class,
                    () -> Message.of("x").with("n", wrong).number("n"), wrong);
        }
        assertThrows(IllegalArgumentException.class, () -> Message.of("x").number("n"));
    }
}
