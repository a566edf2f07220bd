// Java runtimes on disk: which file may be loaded, and where else one lies.
#pragma once

#include <string>
#include <vector>

#include "report.h"

namespace doctor {

// The word size of this program and of the libraries that it can load.
inline constexpr int bits_here = 8 * sizeof(void *);

// Why `path` cannot be loaded as a runtime library, to be put behind its name. Empty when it can.
std::string why_no_runtime(const std::string &path);

// What the runtime of that libjvm.so lacks of what Java needs to start.
void explain_runtime(const std::string &runtime, Report &report);

// The libjvm.so files of a Java installation of any age and word size, or of one that `path` lies
// in.
std::vector<std::string> runtimes_at(const std::string &path);

// The first that can be loaded; empty when there is none.
std::string first_usable(const std::vector<std::string> &found);

// What to do for want of a runtime: to name the usable one of `found`, or else to install one.
std::string cure_by(const std::vector<std::string> &found, const std::string &conf);

}  // namespace doctor
