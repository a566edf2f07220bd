package fi.vantiro.localgrid;

import fi.vantiro.user.VantiroManagerPlugin;
import java.util.Map;

/** A plug-in that describes this machine; its key "label" sets the name it gives it. */
public final class MachinePlugin implements VantiroManagerPlugin {
    private String label = "this machine";

    @Override
    public String getName() {
        return "machine";
    }

    @Override
    public void configure(Map<String, String> configuration) {
        label = configuration.getOrDefault("label", label);
    }

    @Override
    public String toString() {
        return label + ": " + System.getProperty("os.name") + " " + System.getProperty("os.arch")
                + ", " + Runtime.getRuntime().availableProcessors() + " processors";
    }
}
