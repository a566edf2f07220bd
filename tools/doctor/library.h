// The library that is examined, and the archives beside it.
#pragma once

#include <string>

#include "elf_file.h"
#include "report.h"

namespace doctor {

// The library's file: the one that was named, or else the one beside this program or where it was
// installed, or else the one that the loader finds. Empty when there is none.
std::string find_library(const std::string &name);

ElfFile examine_library(const std::string &library, Report &report);
void examine_archives(const std::string &library, Report &report);

}  // namespace doctor
