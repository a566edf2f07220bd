package fi.vantiro.recording;

import fi.vantiro.user.IntermediateResultHandler;
import java.lang.reflect.Array;
import java.lang.reflect.InvocationHandler;
import java.lang.reflect.Proxy;
import java.util.ArrayList;
import java.util.List;
import java.util.stream.Collectors;
import java.util.stream.IntStream;

/** Writes down each call that arrives in Java, and holds what the calls are to answer. */
public final class Recorder {
    private static final List<String> records = new ArrayList<>();
    private static final List<IntermediateResultHandler> handlers = new ArrayList<>();
    private static long number;
    private static String text = "";
    private static String failing;
    private static String message;
    private static final List<byte[]> ballast = new ArrayList<>();
    private static Object lastObject;

    private Recorder() {}

    /** From now on every method returns the number, the text or, unless it is null, an object. */
    public static synchronized void answer(long number, String text) {
        Recorder.number = number;
        Recorder.text = text;
    }

    /** From now on methods with this in their signature throw; none for null. */
    public static synchronized void fail(String signature, String message) {
        failing = signature;
        Recorder.message = message;
    }

    /** Leaves room for small things in the heap, not for one of 8 MB; or gives the room back. */
    public static synchronized void fillHeap(boolean full) {
        ballast.clear();
        ballast.add(new byte[1 << 22]);
        for (int size = 1 << 24; full && size >= 1 << 18;) {
            try {
                ballast.add(new byte[size]);
            } catch (OutOfMemoryError e) {
                size /= 2;
            }
        }
        ballast.remove(0);
    }

    /** The calls since this was asked last, a line each. */
    public static synchronized String take() {
        String taken = String.join("\n", records);
        records.clear();
        return taken;
    }

    public static synchronized Object lastObject() {
        return lastObject;
    }

    /** Gives the text to the registered handlers in turn, from that many threads at once. */
    public static void deliver(String text, int threads, int times) throws InterruptedException {
        List<Thread> started = new ArrayList<>();
        for (int i = 0; i < threads; i++) {
            IntermediateResultHandler handler = handlers.get(i % handlers.size());
            started.add(new Thread(() -> {
                for (int time = 0; time < times; time++) handler.handle(text);
            }));
        }
        for (Thread thread : started) thread.start();
        for (Thread thread : started) thread.join();
    }

    /** A call has arrived; gives what it is to return. */
    public static synchronized Object call(String signature, Class<?> result, Object... arguments)
            throws ReflectiveOperationException {
        StringBuilder record = new StringBuilder(signature);
        for (Object argument : arguments) {
            record.append(' ').append(written(argument));
            if (argument instanceof IntermediateResultHandler) {
                handlers.add((IntermediateResultHandler) argument);
            }
        }
        records.add(record.toString());
        if (failing != null && signature.contains(failing)) {
            throw new IllegalStateException(message);
        }
        if (result == int.class)
            return (int) number;
        if (result == long.class)
            return number;
        if (result == boolean.class)
            return number != 0;
        if (result == String.class)
            return text;
        lastObject = text == null ? null : objectOf(result);
        return lastObject;
    }

    private static Object objectOf(Class<?> type) throws ReflectiveOperationException {
        InvocationHandler nothing = (proxy, method, arguments) -> null;
        if (type == void.class)
            return null;
        if (type == Class.class)
            return Recorder.class;
        if (!type.isInterface())
            return type.getConstructor().newInstance();
        return Proxy.newProxyInstance(type.getClassLoader(), new Class<?>[] {type}, nothing);
    }

    private static String written(Object argument) {
        if (argument != null && argument.getClass().isArray()) {
            return IntStream.range(0, Array.getLength(argument))
                    .mapToObj(i -> written(Array.get(argument, i)))
                    .collect(Collectors.joining(" ", "[", "]"));
        }
        if (argument instanceof IntermediateResultHandler)
            return "handler";
        return argument instanceof String ? "'" + escaped((String) argument) + "'" : "" + argument;
    }

    /** Makes visible what a mistaken encoding would hide. */
    private static String escaped(String text) {
        StringBuilder ascii = new StringBuilder();
        for (char c : text.toCharArray()) {
            ascii.append(c > 0 && c < 128 ? "" + c : '<' + Integer.toHexString(c) + '>');
        }
        return ascii.toString();
    }
}
