// The library's own search for a runtime, watched.
#pragma once

#include <string>
#include <vector>

#include "elf_file.h"
#include "report.h"

namespace doctor {

struct Found {
  // What the library hands to the loader.
  std::string runtime;
  // Which of the sources gave it.
  std::string source;
  // Whether what is wrong with the file has been told.
  bool is_explained = false;
};

Found examine_search(const std::string &directory, const ElfFile &library, Report &report);

}  // namespace doctor
