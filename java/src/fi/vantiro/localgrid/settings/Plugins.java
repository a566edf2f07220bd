package fi.vantiro.localgrid.settings;

import fi.vantiro.user.VantiroManagerPlugin;
import java.util.Collections;
import java.util.HashMap;
import java.util.LinkedHashMap;
import java.util.Map;

/** The plug-ins that the settings name; each is made once, when it is first asked for. */
public final class Plugins {
    private static final String CLASS = "class";

    private final Map<String, Map<String, String>> configurations;
    private final Map<String, VantiroManagerPlugin> made = new HashMap<>();

    public Plugins(Map<String, Map<String, String>> configurations) {
        this.configurations = configurations;
    }

    /** The plug-in of that name, null when the settings have none. */
    public synchronized VantiroManagerPlugin get(String name) {
        if (!made.containsKey(name)) {
            Class<? extends VantiroManagerPlugin> type = type(name);
            if (type == null) {
                return null;
            }
            Map<String, String> values = new LinkedHashMap<>(configurations.get(name));
            values.remove(CLASS);
            made.put(name, make(name, type, values));
        }
        return made.get(name);
    }

    private static VantiroManagerPlugin make(
            String name, Class<? extends VantiroManagerPlugin> type, Map<String, String> values) {
        try {
            VantiroManagerPlugin plugin = type.getDeclaredConstructor().newInstance();
            plugin.configure(values);
            return plugin;
        } catch (ReflectiveOperationException e) {
            throw new IllegalStateException("plug-in " + name + " cannot be made: " + e, e);
        }
    }

    /** The class of the plug-in of that name, null when the settings have none. */
    public Class<? extends VantiroManagerPlugin> type(String name) {
        String className = value(name, CLASS);
        if (className == null) {
            return null;
        }
        try {
            return Class.forName(className).asSubclass(VantiroManagerPlugin.class);
        } catch (ReflectiveOperationException | LinkageError | ClassCastException e) {
            throw new IllegalStateException(
                    "the class " + className + " of plug-in " + name + " cannot be used: " + e, e);
        }
    }

    /** A plug-in's configuration value, null when it is not set. */
    public String value(String name, String key) {
        return configurations.getOrDefault(name, Collections.emptyMap()).get(key);
    }
}
