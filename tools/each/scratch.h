// A directory for the files that the run is described with, gone with its owner.
#ifndef EACH_SCRATCH_H
#define EACH_SCRATCH_H

#include <stdlib.h>

#include <cerrno>
#include <filesystem>
#include <string>
#include <system_error>

namespace each {

class Scratch {
 public:
  explicit Scratch(const std::filesystem::path &parent) {
    std::string name = (parent / "vantiro-each-XXXXXX").string();
    if (!mkdtemp(name.data())) {
      throw std::system_error(errno, std::generic_category(), "cannot make " + name);
    }
    path_ = std::filesystem::absolute(name);
  }
  ~Scratch() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  Scratch(const Scratch &) = delete;
  Scratch &operator=(const Scratch &) = delete;

  const std::filesystem::path &path() const { return path_; }

 private:
  std::filesystem::path path_;
};

}  // namespace each

#endif
