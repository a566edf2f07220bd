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

# Sets `result` to the word size of a library, in bytes; to 0 when the file is none.
function(word_size library result)
  set(class "")
  if(EXISTS "${library}" AND NOT IS_DIRECTORY "${library}")
    file(READ "${library}" class LIMIT 5 HEX)
  endif()
  if(class STREQUAL 7f454c4601)
    set(${result} 4 PARENT_SCOPE)
  elseif(class STREQUAL 7f454c4602)
    set(${result} 8 PARENT_SCOPE)
  else()
    set(${result} 0 PARENT_SCOPE)
  endif()
endfunction()

word_size("${VANTIRO_JVM}" given)
word_size(${jdk}/lib/server/libjvm.so own)
math(EXPR bits "8 * ${CMAKE_SIZEOF_VOID_P}")
if(NOT VANTIRO_JVM AND own EQUAL CMAKE_SIZEOF_VOID_P)
  set_property(CACHE VANTIRO_JVM PROPERTY VALUE ${jdk}/lib/server/libjvm.so)
elseif(NOT VANTIRO_JVM)
  message(STATUS "No ${bits}-bit Java runtime is known here, so none is named in VantiroDLL.conf")
elseif(NOT EXISTS ${VANTIRO_JVM})
  message(WARNING "There is no ${VANTIRO_JVM}: scripts/setup brings it, or -DVANTIRO_JVM=... names another.")
elseif(NOT given EQUAL CMAKE_SIZEOF_VOID_P)
  message(FATAL_ERROR
    "${VANTIRO_JVM} is no ${bits}-bit library. Name the libjvm.so of a ${bits}-bit Java runtime with -DVANTIRO_JVM=...")
endif()
if(VANTIRO_JVM MATCHES "=")
  message(FATAL_ERROR
    "VantiroDLL.conf cannot name ${VANTIRO_JVM}, since a value ends at '='. Build in another folder.")
endif()

# An old runtime must be able to run the classes.
include(UseJava)
set(CMAKE_JAVA_COMPILE_FLAGS --release 8 -Xlint:all -Xlint:-options -Werror -encoding UTF-8)
