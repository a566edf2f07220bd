// The search for a Java runtime library by way of the launchers on PATH.
#include <libgen.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>

#include "host/discovery.h"
#include "host/locations.h"
#include "vantiro/runtime.h"

using namespace vantiro;

namespace {

// As many as the kernel follows. Targets are taken relative to the current directory, so links
// that the kernel resolves may still lead this search in a circle.
constexpr int most_links = 40;

bool find_beside_launcher(const Search &search) {
  char launcher[path_capacity];
  std::strcpy(launcher, search.path);
  char *base = launcher;
  for (int level = 0; level < levels_above_launcher; ++level) base = dirname(base);
  for (const std::string_view location : locations_below_launcher) {
    if (search.finds({base, "/", location})) return true;
  }
  return false;
}

// Replaces a link by its target, as it stands.
bool follow_link(char *path) {
  char target[path_capacity];
  const ssize_t length = readlink(path, target, sizeof target);
  return length >= 0 && join(path, {std::string_view(target, static_cast<std::size_t>(length))});
}

bool find_from_launcher(const Search &search) {
  for (int links = 0; links <= most_links; ++links) {
    struct stat status;
    if (!search.opens(search.path) || lstat(search.path, &status) != 0) return false;
    if (S_ISREG(status.st_mode)) return find_beside_launcher(search);
    if (!follow_link(search.path)) return false;
  }
  return false;
}

}  // namespace

bool vantiro::find_in_path(const Search &search) {
  const char *const value = secure_getenv("PATH");
  char *const entries = value ? strdup(value) : nullptr;
  if (!entries) return false;

  bool found = false;
  char *rest = nullptr;
  for (const char *entry = strtok_r(entries, ":", &rest); entry && !found;
       entry = strtok_r(nullptr, ":", &rest)) {
    found = join(search.path, {entry, "/java"}) && find_from_launcher(search);
  }
  std::free(entries);
  return found;
}

int vantiro_findJavaInPath(char *buffer) { return buffer && find_in_path({buffer}) ? 0 : -1; }
