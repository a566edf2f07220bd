// Where an installation of Java keeps its runtime library, in the order in which it is looked for.
#pragma once

#include <string_view>

namespace vantiro {

#ifdef __i386__

// The second location lacks a "lib"; installations that were laid out to match it exist.
inline constexpr std::string_view locations_below_java_home[] = {
    "jre/lib/i386/server/libjvm.so",
    "jre/i386/client/libjvm.so",
    "lib/i386/server/libjvm.so",
    "lib/i386/client/libjvm.so",
};

// Below the directory of an installation whose launcher is jre/bin/java.
inline constexpr int levels_above_launcher = 3;
inline constexpr std::string_view locations_below_launcher[] = {
    "jre/lib/i386/client/libjvm.so",
    "jre/lib/i386/server/libjvm.so",
    "lib/i386/client/libjvm.so",
    "lib/i386/server/libjvm.so",
};

#else

// The first is that of every runtime since Java 9.
inline constexpr std::string_view locations_below_java_home[] = {
    "lib/server/libjvm.so",
#ifdef __x86_64__
    "jre/lib/amd64/server/libjvm.so",
    "lib/amd64/server/libjvm.so",
#endif
};

// Below the directory of an installation whose launcher is bin/java.
inline constexpr int levels_above_launcher = 2;
inline constexpr std::string_view locations_below_launcher[] = {
    "lib/server/libjvm.so",
#ifdef __x86_64__
    "jre/lib/amd64/server/libjvm.so",
    "lib/amd64/server/libjvm.so",
#endif
};

#endif

}  // namespace vantiro
