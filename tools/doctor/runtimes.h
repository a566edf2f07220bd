// Java runtimes on disk: which file may be loaded, and where else one lies.
#pragma once

#include <string>
#include <vector>

#include "elf_file.h"
#include "report.h"

namespace doctor {

// Why `path` cannot be the runtime library of a program of the kind of `library`, to be put behind
// its name. Empty when it can.
std::string why_no_runtime(const std::string &path, const ElfFile &library);

// What the runtime has of what it needs to start.
Facts needs_of_runtime(const std::string &path);

// The libjvm.so files of a Java installation of any age and word size, or of one that `path` lies
// in.
std::vector<std::string> runtimes_at(const std::string &path);

// The first that such a program can load; empty when there is none.
std::string first_usable(const std::vector<std::string> &found, const ElfFile &library);

// What to do for want of a runtime: to name the usable one of `found`, or else to install one.
std::string cure_by(const std::vector<std::string> &found, const ElfFile &library,
                    const std::string &conf);

}  // namespace doctor
