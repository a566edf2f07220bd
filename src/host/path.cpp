#include "host/path.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstring>

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

std::string_view directory_of(std::string_view file) {
  const std::size_t slash = file.rfind('/');
  return slash == file.npos ? "." : std::string_view(file.data(), slash);
}

bool opens_for_reading(const char *path) {
  // A named pipe would hold up the host, here and in the loader, until somebody writes to it.
  const int file = open(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  if (file < 0) return false;
  struct stat status;
  const bool waits = fstat(file, &status) == 0 && S_ISFIFO(status.st_mode);
  close(file);
  return !waits;
}

}  // namespace vantiro
