// A start of the Java runtime as an initialiser makes it.
#pragma once

#include <string>
#include <vector>

#include "child.h"

namespace doctor {

struct Attempt {
  std::string library;
  std::string directory;
  std::string runtime;
  // What the machine is given beyond the library's own options.
  std::vector<std::string> further_options;
};

// The step in which Java may end the process.
inline constexpr char creating_machine[] = "creating the machine";

// For a child. Of the facts, "step" is what it is about to do, "status" what an initialiser
// returns, and "loader", "exception" or "message" why.
void start(const Attempt &attempt, Tell tell);

// The option by which the library gives its machine the archives.
std::string class_path_option(const std::string &directory);

// The file that the loader takes for that name; empty when it finds none.
std::string locate(const std::string &name);

}  // namespace doctor
