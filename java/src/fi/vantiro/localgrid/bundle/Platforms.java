package fi.vantiro.localgrid.bundle;

import fi.vantiro.localgrid.base.Arguments;
import java.util.Arrays;
import java.util.List;
import java.util.Locale;

/** The platforms that files can be for. */
public final class Platforms {
    private static final String SYSTEM = System.getProperty("os.name").toLowerCase(Locale.ROOT);
    /** Those of this machine, the most specific one last. */
    private static final List<String> THIS =
            Arrays.asList("", "any", SYSTEM, SYSTEM + "-" + System.getProperty("os.arch"));
    private static final List<String> OTHERS = Arrays.asList("linux", "linux-i386", "linux-amd64",
            "linux-arm", "linux-aarch64", "linux-ppc64le", "linux-riscv64", "linux-s390x", "macos",
            "macos-amd64", "macos-aarch64", "windows", "windows-i386", "windows-amd64");

    private Platforms() {}

    /** The name of a platform that exists; null means any, as "" does. */
    public static String known(String name) {
        String platform = Arguments.orEmpty(name).toLowerCase(Locale.ROOT);
        if (!THIS.contains(platform) && !OTHERS.contains(platform)) {
            throw Arguments.bad(
                    "a platform is \"\", any, " + String.join(", ", OTHERS) + ", and not", name);
        }
        return platform;
    }

    /** How specific a known platform is to this machine; negative when files for it do not fit. */
    public static int fit(String platform) {
        return THIS.indexOf(platform);
    }
}
