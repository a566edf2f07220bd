package fi.vantiro.user;

import fi.vantiro.localgrid.base.Arguments;
import java.lang.reflect.InvocationTargetException;
import java.lang.reflect.Method;
import java.util.Arrays;
import java.util.List;
import java.util.Locale;
import java.util.Map;
import java.util.TreeMap;

/**
 * The "key=value" arguments of a single call, each of which stands for a setter of PeachWrapper.
 */
final class PeachArguments {
    private static final List<Class<?>> TYPES =
            Arrays.asList(int.class, boolean.class, String.class, String[].class);
    /** The setters by their names without "set", "add", "put" or "new", and in the singular. */
    private static final Map<String, Method> SETTERS = new TreeMap<>();

    static {
        for (Method method : PeachWrapper.class.getMethods()) {
            String name = method.getName();
            Class<?>[] types = method.getParameterTypes();
            if (name.matches("(set|add|put|new)[A-Z].*") && types.length > 1
                    && TYPES.containsAll(Arrays.asList(types))) {
                String key = name.substring(3, 4).toLowerCase(Locale.ROOT) + name.substring(4);
                SETTERS.merge(key.replace("Extras", "Extra"), method, PeachArguments::simpler);
            }
        }
    }

    private PeachArguments() {}

    /** Of two setters of one name that with fewer values, or else that which takes a text. */
    private static Method simpler(Method one, Method other) {
        int more = one.getParameterCount() - other.getParameterCount();
        return more < 0 || more == 0 && one.getParameterTypes()[1] == String.class ? one : other;
    }

    /** Puts arguments into the description of a run. */
    static void set(PeachWrapper wrapper, int handle, String[] arguments) {
        for (String argument : Arguments.list(arguments, "arguments")) {
            String[] parts = argument.split("=", 2);
            Method setter = SETTERS.get(parts[0]);
            if (setter == null || parts.length < 2) {
                throw Arguments.bad(
                        "not of the form key=value with one of the keys " + SETTERS.keySet(),
                        argument);
            }
            try {
                setter.invoke(wrapper, values(setter, handle, parts[1]));
            } catch (InvocationTargetException e) {
                if (e.getCause() instanceof Error) {
                    throw(Error) e.getCause();
                }
                throw Arguments.bad(e.getCause().getMessage() + "; the argument is", argument);
            } catch (IllegalAccessException e) {
                throw new IllegalStateException(e);
            }
        }
    }

    private static Object[] values(Method setter, int handle, String text) {
        Class<?>[] types = setter.getParameterTypes();
        String separator = setter.getName().startsWith("put") ? "=" : ",";
        String[] parts = text.split(separator, types.length - 1);
        Object[] values = new Object[types.length];
        values[0] = handle;
        for (int i = 1; i < types.length; i++) {
            values[i] = value(types[i], i <= parts.length ? parts[i - 1] : "");
        }
        return values;
    }

    private static Object value(Class<?> type, String text) {
        if (type == String[].class) {
            return text.split(",");
        }
        if (type == int.class) {
            return Arguments.number(text);
        }
        return type == boolean.class ? (Object) Arguments.flag(text) : text;
    }
}
