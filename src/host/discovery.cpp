#include "host/discovery.h"

#include <dlfcn.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "host/path.h"
#include "vantiro/runtime.h"

namespace vantiro {
namespace {

// Takes over the value of the first line with the key JVMPATH.
bool read_configured_runtime(std::string_view directory, char *path) {
  char name[path_capacity];
  if (!directory.data() || !join(name, {directory, "/VantiroDLL.conf"})) return false;
  std::FILE *const file = std::fopen(name, "re");
  if (!file) return false;

  constexpr const char *delimiters = "=\n\r";
  bool found = false;
  char line[path_capacity];
  while (!found && std::fgets(line, sizeof line, file)) {
    char *rest = nullptr;
    const char *const key = strtok_r(line, delimiters, &rest);
    const char *const value = key ? strtok_r(nullptr, delimiters, &rest) : nullptr;
    found = value && std::strcmp(key, "JVMPATH") == 0 && join(path, {value});
  }
  std::fclose(file);
  return found;
}

bool find_in_java_home(char *path) {
  const char *const home = std::getenv("JAVA_HOME");
  // The second location lacks a "lib"; installations that were laid out to match it exist.
  return home && find_below(home,
                            {"jre/lib/i386/server/libjvm.so", "jre/i386/client/libjvm.so",
                             "lib/i386/server/libjvm.so", "lib/i386/client/libjvm.so"},
                            path);
}

}  // namespace

std::string_view library_directory() {
  Dl_info library;
  if (!dladdr(reinterpret_cast<const void *>(&vantiro_initJava), &library)) return {};
  const std::string_view file = library.dli_fname;
  const std::size_t slash = file.rfind('/');
  return slash == file.npos ? std::string_view(".") : std::string_view(file.data(), slash);
}

void find_runtime(std::string_view directory, char *path) {
  if (read_configured_runtime(directory, path)) return;
  if (find_in_java_home(path)) return;
  if (vantiro_findJavaInPath(path) == 0) return;
  join(path, {"libjvm.so"});
}

}  // namespace vantiro
