#include "host/path.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstring>

#include "host/discovery.h"

namespace vantiro {

bool join(char *path, std::initializer_list<std::string_view> parts) {
  std::size_t length = 0;
  for (const std::string_view part : parts) length += part.size();
  if (length >= path_capacity) return false;
  for (const std::string_view part : parts) {
    std::memcpy(path, part.data(), part.size());
    path += part.size();
  }
  *path = '\0';
  return true;
}

bool opens_for_reading(const char *path) {
  // Without O_NONBLOCK a named pipe would hold up the host until somebody writes to it.
  const int file = open(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  if (file < 0) return false;
  close(file);
  return true;
}

bool find_below(std::string_view base, std::initializer_list<std::string_view> locations,
                char *path) {
  for (const std::string_view location : locations) {
    if (join(path, {base, "/", location}) && opens_for_reading(path)) return true;
  }
  return false;
}

}  // namespace vantiro
