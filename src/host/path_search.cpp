// The search for a Java runtime library by way of the launchers on PATH.
#include <libgen.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>

#include "host/discovery.h"
#include "host/path.h"
#include "vantiro/runtime.h"

namespace {

using vantiro::path_capacity;

// As many as the kernel follows. Targets are taken relative to the current directory, so links
// that the kernel resolves may still lead this search in a circle.
constexpr int most_links = 40;

bool find_beside_launcher(char *path) {
  char launcher[path_capacity];
  std::strcpy(launcher, path);
  const char *const base = dirname(dirname(dirname(launcher)));
  return vantiro::find_below(base,
                             {"jre/lib/i386/client/libjvm.so", "jre/lib/i386/server/libjvm.so",
                              "lib/i386/client/libjvm.so", "lib/i386/server/libjvm.so"},
                             path);
}

// Replaces a link by its target, as it stands.
bool follow_link(char *path) {
  char target[path_capacity];
  const ssize_t length = readlink(path, target, sizeof target);
  return length >= 0 &&
         vantiro::join(path, {std::string_view(target, static_cast<std::size_t>(length))});
}

bool find_from_launcher(char *path) {
  for (int links = 0; links <= most_links; ++links) {
    struct stat status;
    if (!vantiro::opens_for_reading(path) || lstat(path, &status) != 0) return false;
    if (S_ISREG(status.st_mode)) return find_beside_launcher(path);
    if (!follow_link(path)) return false;
  }
  return false;
}

}  // namespace

int vantiro_findJavaInPath(char *buffer) {
  const char *const value = std::getenv("PATH");
  char *const entries = buffer && value ? strdup(value) : nullptr;
  if (!entries) return -1;

  bool found = false;
  char *rest = nullptr;
  for (const char *entry = strtok_r(entries, ":", &rest); entry && !found;
       entry = strtok_r(nullptr, ":", &rest)) {
    found = vantiro::join(buffer, {entry, "/java"}) && find_from_launcher(buffer);
  }
  std::free(entries);
  return found ? 0 : -1;
}
