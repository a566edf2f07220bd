// What a machine that the library creates is asked for.
#pragma once

namespace vantiro {

// To be formatted with the library's directory, three times, each as a length and the text.
inline constexpr char class_path_option[] =
    "-Djava.class.path=%.*s/vantiro.jar:%.*s/commons-codec-1.3.jar:%.*s/xmlrpc-2.0.jar";
inline constexpr char heap_option[] = "-Xmx128M";
inline constexpr char management_option[] = "-Dcom.sun.management.jmxremote";

}  // namespace vantiro
