// Where an installation of Java keeps its runtime library, in the order in which it is looked for.
#pragma once

#include <string_view>

namespace vantiro {

// The second location lacks a "lib"; installations that were laid out to match it exist.
inline constexpr std::string_view locations_below_java_home[] = {
    "jre/lib/i386/server/libjvm.so",
    "jre/i386/client/libjvm.so",
    "lib/i386/server/libjvm.so",
    "lib/i386/client/libjvm.so",
};

inline constexpr std::string_view locations_below_launcher[] = {
    "jre/lib/i386/client/libjvm.so",
    "jre/lib/i386/server/libjvm.so",
    "lib/i386/client/libjvm.so",
    "lib/i386/server/libjvm.so",
};

}  // namespace vantiro
