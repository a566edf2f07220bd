package fi.vantiro.user;

import java.util.Map;

/** A part that the management object hosts for its callers; named by the settings. */
public interface VantiroManagerPlugin {
    /** The name of what the plug-in is. */
    String getName();

    /** Takes the plug-in's values from the settings, once, before anything else. */
    void configure(Map<String, String> configuration);
}
