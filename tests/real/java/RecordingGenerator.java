import java.io.IOException;
import java.lang.invoke.MethodType;
import java.lang.reflect.Method;
import java.lang.reflect.Modifier;
import java.net.URL;
import java.net.URLClassLoader;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.nio.file.Path;
import java.nio.file.Paths;
import java.util.ArrayList;
import java.util.Arrays;
import java.util.List;
import java.util.function.IntFunction;
import java.util.stream.Collectors;
import java.util.stream.IntStream;

/**
 * Writes recording versions of the two classes that the library calls, with the public methods that
 * the stand-in's classes have: a method that the stand-in lacks is lacking here too.
 *
 * <p>Arguments: the stand-in's archive, the folder for the sources, the constructor of the
 * management class (usable, throwing or none without parameters), and the methods to keep (none:
 * all).
 */
public final class RecordingGenerator {
    private final String constructor;
    private final List<String> kept;

    private RecordingGenerator(String constructor, List<String> kept) {
        this.constructor = constructor;
        this.kept = kept;
    }

    public static void main(String[] arguments) throws Exception {
        URL[] standIn = {Paths.get(arguments[0]).toUri().toURL()};
        Path folder = Paths.get(arguments[1]);
        List<String> kept = Arrays.asList(arguments).subList(3, arguments.length);
        RecordingGenerator generator = new RecordingGenerator(arguments[2], kept);
        try (URLClassLoader loader = new URLClassLoader(standIn)) {
            generator.write(folder, loader.loadClass("fi.vantiro.user.ManagementImpl"), "");
            generator.write(folder, loader.loadClass("fi.vantiro.user.PeachWrapper"), "peach.");
        }
    }

    private void write(Path folder, Class<?> type, String prefix) throws IOException {
        List<String> lines = new ArrayList<>();
        lines.add("package fi.vantiro.user;");
        lines.add("import fi.vantiro.recording.Recorder;");
        lines.add("@SuppressWarnings({\"cast\", \"rawtypes\"})");
        lines.add("public class " + type.getSimpleName() + " {");
        lines.add(prefix.isEmpty() ? managementConstructor() : "public PeachWrapper() {}");
        for (Method method : type.getMethods()) {
            boolean own = method.getDeclaringClass() != Object.class && !method.isSynthetic()
                    && !Modifier.isStatic(method.getModifiers());
            if (own && (kept.isEmpty() || kept.contains(method.getName()))) {
                lines.add(recording(method, prefix));
            }
        }
        lines.add("}");
        Path file = folder.resolve("fi/vantiro/user/" + type.getSimpleName() + ".java");
        Files.createDirectories(file.getParent());
        Files.write(file, lines, StandardCharsets.UTF_8);
    }

    private String managementConstructor() {
        switch (constructor) {
            case "none":
                return "public ManagementImpl(int value) {}";
            case "throwing":
                return "public ManagementImpl() { throw new IllegalStateException(); }";
            default:
                return "public ManagementImpl() throws Exception {"
                        + " Recorder.call(\"new ManagementImpl()\", void.class); }";
        }
    }

    private static String recording(Method method, String prefix) {
        Class<?>[] types = method.getParameterTypes();
        String result = method.getReturnType().getCanonicalName();
        String returned = result.equals("void") ? "" : "return (" + result + ") ";
        return "public " + result + " " + method.getName()
                + joined(types.length, i -> types[i].getCanonicalName() + " a" + i, "(", ")")
                + " throws Exception { " + returned + "Recorder.call(\"" + prefix
                + signature(method) + "\", " + result + ".class, "
                + joined(types.length, i -> "a" + i, "new Object[] {", "}") + "); }";
    }

    /** As JNI knows the method, but with short names for the types of most. */
    private static String signature(Method method) {
        String descriptor =
                MethodType.methodType(method.getReturnType(), method.getParameterTypes())
                        .toMethodDescriptorString();
        return method.getName()
                + descriptor.replace("[Ljava/lang/String;", "A")
                          .replace("Ljava/lang/String;", "S")
                          .replaceAll("L[a-z/]*", "L");
    }

    private static String joined(int count, IntFunction<String> part, String before, String after) {
        return IntStream.range(0, count).mapToObj(part).collect(
                Collectors.joining(", ", before, after));
    }
}
