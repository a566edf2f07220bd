#include "host/discovery.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "host/locations.h"

namespace vantiro {
namespace {

// A named pipe or a device in the place of the file is passed over: it could hold up the host.
std::FILE *open_regular(const char *name) {
  const int file = open(name, O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  struct stat status;
  if (file >= 0 && fstat(file, &status) == 0 && S_ISREG(status.st_mode)) {
    std::FILE *const stream = fdopen(file, "r");
    if (stream) return stream;
  }
  if (file >= 0) close(file);
  return nullptr;
}

}  // namespace

bool Search::finds(std::initializer_list<std::string_view> parts) const {
  return join(path, parts) && opens(path);
}

const char *runtime_named_by(char *line) {
  constexpr const char *delimiters = "=\n\r";
  char *rest = nullptr;
  const char *const key = strtok_r(line, delimiters, &rest);
  return key && std::strcmp(key, "JVMPATH") == 0 ? strtok_r(nullptr, delimiters, &rest) : nullptr;
}

bool find_in_configuration(const Search &search, std::string_view library_directory) {
  char name[path_capacity];
  if (!library_directory.data() || !join(name, {library_directory, "/VantiroDLL.conf"})) {
    return false;
  }
  std::FILE *const file = open_regular(name);
  if (!file) return false;

  bool found = false;
  char line[path_capacity];
  while (!found && std::fgets(line, sizeof line, file)) {
    const char *const runtime = runtime_named_by(line);
    found = runtime && join(search.path, {runtime});
  }
  std::fclose(file);
  return found;
}

bool find_in_java_home(const Search &search) {
  // Whoever calls a set-user-id host must not choose the code that it runs.
  const char *const home = secure_getenv("JAVA_HOME");
  if (!home) return false;
  for (const std::string_view location : locations_below_java_home) {
    if (search.finds({home, "/", location})) return true;
  }
  return false;
}

void find_runtime(const Search &search, std::string_view library_directory) {
  if (find_in_configuration(search, library_directory)) return;
  if (find_in_java_home(search)) return;
  if (find_in_path(search)) return;
  join(search.path, {"libjvm.so"});
}

}  // namespace vantiro
