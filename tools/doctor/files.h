// What is the matter with a file, in words.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace doctor {

// Why the file at `path` cannot be read as a regular file, to be put behind its name: "does not
// exist: there is no /opt/java". Empty when it can.
std::string why_unreadable(const std::string &path);

bool is_readable(const std::string &path);
bool exists(const std::string &path);
bool is_directory(const std::string &path);

// The path up to its last '/', "." without one, and what follows it.
std::string directory_of(const std::string &path);
std::string name_of(const std::string &path);

// The path without links; the path itself when it leads nowhere.
std::string real_path(const std::string &path);

std::vector<std::string> names_in(const std::string &directory);

// A file that is read in pieces, since it may be larger than memory.
class File {
 public:
  explicit File(const std::string &path);
  File(const File &) = delete;
  File &operator=(const File &) = delete;
  ~File();

  std::uint64_t size() const { return size_; }

  // Nothing when the file has no such bytes.
  std::optional<std::string> bytes(std::uint64_t offset, std::uint64_t count) const;

  template <typename Record>
  std::optional<Record> record(std::uint64_t offset) const {
    const auto data = bytes(offset, sizeof(Record));
    if (!data) return std::nullopt;
    Record result;
    data->copy(reinterpret_cast<char *>(&result), sizeof result);
    return result;
  }

 private:
  int descriptor_;
  std::uint64_t size_ = 0;
};

}  // namespace doctor
