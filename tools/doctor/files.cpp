#include "files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>

namespace doctor {
namespace fs = std::filesystem;
namespace {

std::string user() { return "user " + std::to_string(geteuid()); }

// The first component on the way to the file that is not there, or cannot be passed.
std::string first_obstacle(const std::string &path, int flag) {
  for (std::size_t slash = path.find('/', 1); slash != path.npos;
       slash = path.find('/', slash + 1)) {
    const std::string part = path.substr(0, slash);
    if (access(part.c_str(), flag) != 0) return part;
  }
  return path;
}

std::string why_not_there(const std::string &path) {
  std::error_code error;
  const fs::path target = fs::read_symlink(path, error);
  if (!error) return "is a link to " + target.string() + ", which does not exist";
  const std::string missing = first_obstacle(path, F_OK);
  return missing == path ? "does not exist" : "does not exist: there is no " + missing;
}

std::string why_denied(const std::string &path) {
  const std::string closed = first_obstacle(path, X_OK);
  if (closed == path) return "cannot be read by " + user();
  return "cannot be reached by " + user() + ": the directory " + closed + " is closed to it";
}

}  // namespace

std::string why_unreadable(const std::string &path) {
  const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  if (file < 0) {
    if (errno == ENOENT) return why_not_there(path);
    if (errno == ENOTDIR) return "does not exist: one of its directories is a file";
    if (errno == EACCES) return why_denied(path);
    if (errno == ELOOP) return "is a link that leads in a circle";
    return std::string("does not open: ") + strerror(errno);
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

bool is_directory(const std::string &path) {
  std::error_code error;
  return fs::is_directory(path, error);
}

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

File::File(const std::string &path)
    : descriptor_(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK)) {
  struct stat status {};
  if (descriptor_ >= 0 && fstat(descriptor_, &status) == 0) {
    size_ = static_cast<std::uint64_t>(status.st_size);
  }
}

File::~File() {
  if (descriptor_ >= 0) close(descriptor_);
}

std::optional<std::string> File::bytes(std::uint64_t offset, std::uint64_t count) const {
  if (count > size_ || offset > size_ - count) return std::nullopt;
  std::string data(count, '\0');
  std::size_t done = 0;
  while (done < count) {
    const ssize_t piece =
        pread(descriptor_, data.data() + done, count - done, static_cast<off_t>(offset + done));
    if (piece <= 0) return std::nullopt;
    done += static_cast<std::size_t>(piece);
  }
  return data;
}

}  // namespace doctor
