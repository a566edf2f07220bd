# The JDK that compiles the Java side and has jni.h, and the runtime that the library is to load.

find_package(Java 9 COMPONENTS Development)
if(NOT Java_JAVAC_EXECUTABLE)
  message(FATAL_ERROR "There is no javac. Install the package default-jdk-headless (scripts/setup does).")
endif()
file(REAL_PATH ${Java_JAVAC_EXECUTABLE} javac)
cmake_path(GET javac PARENT_PATH jdk)
cmake_path(GET jdk PARENT_PATH jdk)

add_library(vantiro_jni INTERFACE)
target_include_directories(vantiro_jni SYSTEM INTERFACE ${jdk}/include ${jdk}/include/linux)

if(NOT VANTIRO_JVM)
  set_property(CACHE VANTIRO_JVM PROPERTY VALUE ${jdk}/lib/server/libjvm.so)
endif()
if(NOT EXISTS ${VANTIRO_JVM})
  message(WARNING "There is no ${VANTIRO_JVM}: scripts/setup brings it, or -DVANTIRO_JVM=... names another.")
endif()
if(VANTIRO_JVM MATCHES "=")
  message(FATAL_ERROR
    "VantiroDLL.conf cannot name ${VANTIRO_JVM}, since a value ends at '='. Build in another folder.")
endif()

# An old runtime must be able to run the classes.
include(UseJava)
set(CMAKE_JAVA_COMPILE_FLAGS --release 8 -Xlint:all -Xlint:-options -Werror -encoding UTF-8)
