// An archive's directory, as far as a class path needs it to be in order.
#pragma once

#include <string>

namespace doctor {

// What is the matter with the archive, to be put behind its name, and whether it names `entry`.
struct ZipFile {
  std::string fault;
  bool has_entry = false;
};

ZipFile read_zip(const std::string &path, const std::string &entry);

}  // namespace doctor
