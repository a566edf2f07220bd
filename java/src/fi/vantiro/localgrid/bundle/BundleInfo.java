package fi.vantiro.localgrid.bundle;

import fi.vantiro.localgrid.base.Arguments;
import java.nio.charset.StandardCharsets;
import java.util.ArrayList;
import java.util.List;
import java.util.jar.Attributes;
import java.util.zip.CRC32;

/** What the manifest of a bundle says about it. */
public final class BundleInfo {
    private static final String SAFE = "[A-Za-z0-9][A-Za-z0-9._-]*";

    public final String name;
    public final String version;
    public final String prefix;
    final String platform;
    final String description;
    final String executable;
    final String vendor;
    final List<String> imports = new ArrayList<>();

    /** A null or empty text leaves that attribute out; name and version are needed. */
    public BundleInfo(String name, String version, String prefix, String platform,
            String description, String executable, String vendor, String[] imports) {
        this.name = safe(name, "name", true);
        this.version = safe(version, "version", true);
        this.prefix = safe(prefix, "prefix", false);
        this.platform = Platforms.known(platform);
        this.description = Arguments.orEmpty(description);
        this.executable = Arguments.isEmpty(executable) ? "" : Arguments.inside(executable);
        this.vendor = Arguments.orEmpty(vendor);
        for (String imported : Arguments.list(imports, "imports")) {
            this.imports.add(safe(imported, "import", true));
        }
    }

    /** Reads what write wrote. */
    static BundleInfo read(Attributes attributes) {
        String imports = Arguments.orEmpty(attributes.getValue("Bundle-Imports"));
        return new BundleInfo(attributes.getValue("Bundle-Name"),
                attributes.getValue("Bundle-Version"), attributes.getValue("Bundle-Prefix"),
                attributes.getValue("Bundle-Platform"), attributes.getValue("Bundle-Description"),
                attributes.getValue("Bundle-Executable"), attributes.getValue("Bundle-Vendor"),
                imports.isEmpty() ? new String[0] : imports.split(","));
    }

    void write(Attributes attributes) {
        put(attributes, "Bundle-Name", name);
        put(attributes, "Bundle-Version", version);
        put(attributes, "Bundle-Prefix", prefix);
        put(attributes, "Bundle-Platform", platform);
        put(attributes, "Bundle-Description", description);
        put(attributes, "Bundle-Executable", executable);
        put(attributes, "Bundle-Vendor", vendor);
        put(attributes, "Bundle-Imports", String.join(",", imports));
    }

    private static void put(Attributes attributes, String key, String value) {
        if (value.matches("(?s).*[\\r\\n\\x00].*")) {
            throw Arguments.bad(key + " must be one line", value);
        }
        if (!value.isEmpty()) {
            attributes.putValue(key, value);
        }
    }

    private static String safe(String text, String what, boolean needed) {
        String value = Arguments.orEmpty(text);
        if (value.isEmpty() ? needed : !value.matches(SAFE)) {
            throw Arguments.bad(
                    "a bundle's " + what + " is made of letters, digits, '.', '_' and '-'", text);
        }
        return value;
    }

    /** The name with its prefix. */
    String qualifiedName() {
        return prefix.isEmpty() ? name : prefix + "." + name;
    }

    /** What tells bundles apart; its parts hold no such separators. */
    private String identity() {
        return (prefix.isEmpty() ? "" : prefix + "+") + name + "@" + version;
    }

    String fileName() {
        return identity() + (platform.isEmpty() ? "" : "+" + platform) + ".jar";
    }

    /**
     * A number that follows from prefix, name and version alone, so that it is the same anywhere.
     */
    int id() {
        CRC32 crc = new CRC32();
        crc.update(identity().getBytes(StandardCharsets.UTF_8));
        return Math.max(1, (int) (crc.getValue() & Integer.MAX_VALUE));
    }

    public boolean hasName(String text) {
        return text.equals(name) || text.equals(qualifiedName());
    }

    /** Compares the parts of versions as numbers where they are numbers. */
    static int compareVersions(String left, String right) {
        String[] a = left.split("[._-]");
        String[] b = right.split("[._-]");
        for (int i = 0; i < Math.min(a.length, b.length); i++) {
            boolean numbers = a[i].matches("\\d{1,18}") && b[i].matches("\\d{1,18}");
            int order = numbers ? Long.compare(Long.parseLong(a[i]), Long.parseLong(b[i]))
                                : a[i].compareTo(b[i]);
            if (order != 0) {
                return order;
            }
        }
        return Integer.compare(a.length, b.length);
    }
}
