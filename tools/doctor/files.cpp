#include "files.h"

#include <elf.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>

namespace doctor {
namespace fs = std::filesystem;
namespace {

// What stands in the way to the file: a directory that is not there, or cannot be passed.
std::string obstacle(const std::string &path) {
  for (std::size_t slash = path.find('/', 1); slash != path.npos;
       slash = path.find('/', slash + 1)) {
    const std::string part = path.substr(0, slash);
    if (access(part.c_str(), F_OK) != 0) return ": there is no " + part;
    if (access(part.c_str(), X_OK) != 0) return ": the directory " + part + " is closed to it";
  }
  return "";
}

}  // namespace

std::string why_unreadable(const std::string &path) {
  const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  if (file < 0) {
    const int fault = errno;
    const std::string way = obstacle(path);
    std::error_code error;
    const fs::path target = fs::read_symlink(path, error);
    if (fault == ENOENT && !error)
      return "is a link to " + target.string() + ", which is not there";
    if (fault == ENOENT) return "does not exist" + way;
    if (fault == ENOTDIR) return "does not exist: one of its directories is a file";
    if (fault == ELOOP) return "is a link that leads in a circle";
    if (fault != EACCES) return std::string("does not open: ") + strerror(fault);
    return (way.empty() ? "cannot be read by user " : "cannot be reached by user ") +
           std::to_string(geteuid()) + way;
  }
  struct stat status {};
  fstat(file, &status);
  close(file);
  if (S_ISREG(status.st_mode)) return "";
  if (S_ISDIR(status.st_mode)) return "is a directory";
  if (S_ISFIFO(status.st_mode)) return "is a named pipe";
  return "is no regular file";
}

bool is_readable(const std::string &path) { return why_unreadable(path).empty(); }

bool exists(const std::string &path) { return access(path.c_str(), F_OK) == 0; }

std::string directory_of(const std::string &path) {
  const std::size_t slash = path.rfind('/');
  return slash == path.npos ? "." : path.substr(0, slash);
}

std::string name_of(const std::string &path) { return path.substr(path.rfind('/') + 1); }

std::string real_path(const std::string &path) {
  std::error_code error;
  const fs::path real = fs::canonical(path, error);
  return error ? path : real.string();
}

std::vector<std::string> names_in(const std::string &directory) {
  std::vector<std::string> names;
  std::error_code error;
  for (fs::directory_iterator entry(directory, error), end; !error && entry != end;
       entry.increment(error)) {
    names.push_back(entry->path().filename());
  }
  std::sort(names.begin(), names.end());
  return names;
}

int bits_of(const std::string &path) {
  if (!is_readable(path)) return 0;
  char head[EI_CLASS + 1] = "";
  std::ifstream(path, std::ios::binary).read(head, sizeof head);
  if (std::memcmp(head, ELFMAG, SELFMAG) != 0) return 0;
  return head[EI_CLASS] == ELFCLASS32 ? 32 : 64;
}

}  // namespace doctor
