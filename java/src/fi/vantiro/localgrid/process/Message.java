package fi.vantiro.localgrid.process;

import fi.vantiro.localgrid.base.NativeText;
import java.io.ByteArrayOutputStream;
import java.util.ArrayList;
import java.util.List;

/**
 * A message between the program and its keeper: a version, a kind, and fields with names, as
 * docs/keeper.md lists them. Texts are bytes in the encoding of the locale, as arguments are.
 */
public final class Message {
    private static final String VERSION = "version";
    private static final String CURRENT = "1";
    private static final String KIND = "kind";

    private final List<String> names = new ArrayList<>();
    private final List<String> values = new ArrayList<>();
    private final String trouble;

    private Message(String trouble) {
        this.trouble = trouble;
    }

    /** A message to be sent, so far without fields of its own. */
    public static Message of(String kind) {
        return new Message(null).with(VERSION, CURRENT).with(KIND, kind);
    }

    public Message with(String name, String value) {
        names.add(name);
        values.add(value);
        return this;
    }

    public Message with(String name, long value) {
        return with(name, String.valueOf(value));
    }

    public Message withAll(String name, Iterable<String> list) {
        list.forEach(value -> with(name, value));
        return this;
    }

    /** What is sent: it is apart from whatever a stranger has written before it. */
    public byte[] bytes() {
        ByteArrayOutputStream bytes = new ByteArrayOutputStream();
        bytes.write(0);
        bytes.write(0);
        for (int i = 0; i < names.size(); i++) {
            byte[] field = NativeText.bytes(names.get(i) + "=" + values.get(i));
            bytes.write(field, 0, field.length);
            bytes.write(0);
        }
        bytes.write(0);
        return bytes.toByteArray();
    }

    /** Reads fields, each of which ends with a NUL. */
    static Message parse(byte[] bytes, int length, boolean cut) {
        List<String> fields = new ArrayList<>();
        for (int begin = 0, end = 0; end < length; end++) {
            if (bytes[end] == 0) {
                fields.add(new String(bytes, begin, end - begin, NativeText.charset()));
                begin = end + 1;
            }
        }
        Message message = new Message(cut ? "it is too long" : trouble(fields));
        for (String field : fields) {
            int equals = field.indexOf('=');
            message.with(field.substring(0, Math.max(equals, 0)), field.substring(equals + 1));
        }
        return message;
    }

    private static String trouble(List<String> fields) {
        if (fields.isEmpty() || !fields.get(0).startsWith(VERSION + "=")) {
            return "it does not begin with a version";
        }
        if (!fields.get(0).equals(VERSION + "=" + CURRENT)) {
            return "it is of another version";
        }
        if (fields.size() < 2 || !fields.get(1).startsWith(KIND + "=")) {
            return "it does not say what kind it is";
        }
        boolean named = fields.stream().allMatch(field -> field.indexOf('=') > 0);
        return named ? null : "it has a field without a name";
    }

    /** Why it cannot be used; null when it is well formed and of this version. */
    public String trouble() {
        return trouble;
    }

    public boolean is(String kind) {
        int position = names.indexOf(KIND);
        return position >= 0 && values.get(position).equals(kind);
    }

    /** The value of the first field of that name. */
    public String text(String name) {
        int position = names.indexOf(name);
        if (position < 0) {
            throw new IllegalArgumentException("it has no field " + name);
        }
        return values.get(position);
    }

    public long number(String name) {
        String text = text(name);
        try {
            return Long.parseLong(text);
        } catch (NumberFormatException e) {
            throw new IllegalArgumentException(name + "=" + text + " is no number", e);
        }
    }

    /** All fields, for people. */
    @Override
    public String toString() {
        StringBuilder text = new StringBuilder();
        for (int i = 0; i < names.size(); i++) {
            text.append(i == 0 ? "" : " ").append(names.get(i)).append('=').append(values.get(i));
        }
        return text.toString();
    }
}
