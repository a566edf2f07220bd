// What a status of an initialiser means when nothing more is known, and what to do.
#pragma once

namespace doctor {

struct StatusWords {
  int status;
  const char *cause;
  const char *cure;
};

// The words of docs/hosting.md, where each stands in the row of its status.
inline constexpr StatusWords status_words[] = {
    {-11,
     "the Java machine could not be created or joined, and says why on standard output or error",
     "start the program again when that is mended, since a process can create only one machine"},
    {-12,
     "vantiro.jar is not beside the library, cannot be read, or has no usable management class",
     "put the right one there and start the program again"},
    {-13, "the Java side threw an exception",
     "mend what the exception names, which is on standard error; more memory for Java comes with "
     "_JAVA_OPTIONS=-Xmx512M"},
    {-14, "the management class in vantiro.jar has no constructor without parameters",
     "put the vantiro.jar that goes with the library there and start the program again"},
    {-15, "the management class in vantiro.jar does not have the initialiser that was called",
     "put the vantiro.jar that goes with the library there"},
    {-16, "the constructor of the management class threw an exception",
     "mend what the exception names, which vantiro-doctor shows"},
    {-22, "the Java runtime library was not found, or cannot be loaded by this program",
     "name the right libjvm.so in VantiroDLL.conf beside the library"},
};

}  // namespace doctor
