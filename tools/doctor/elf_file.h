// A program or library of this system, judged by reading it: the loader would crash on some.
#pragma once

#include <cstdint>
#include <set>
#include <string>

namespace doctor {

struct ElfFile {
  // Empty when the file is whole; else what it is, to be put behind its name.
  std::string fault;
  int bits = 0;
  int machine = 0;
  bool is_program = false;
  // The names that it exports; nothing is known of a file without section headers.
  std::set<std::string> symbols;
  bool symbols_known = false;

  bool exports(const std::string &name) const { return !symbols_known || symbols.contains(name); }
  std::string kind() const;
};

ElfFile read_elf(const std::string &path);

}  // namespace doctor
