// Work in a process of its own, since a Java runtime or the loader may end the process it is in.
#pragma once

#include <functional>
#include <string>

#include "report.h"

namespace doctor {

// Keeps a fact, should the process end. A later one of the same name takes its place.
using Tell = void (*)(const std::string &name, const std::string &fact);
using Job = std::function<void(Tell)>;

struct Outcome {
  // What the job told.
  Facts facts;
  // How the process ended, to be put behind "it"; empty when the job came to its end.
  std::string end;
  // What it wrote on standard output and standard error.
  std::string output;

  // Empty when it was not told.
  std::string fact(const std::string &name) const;
};

// A job that has told a "status" counts as done, even if its process does not end.
Outcome run_in_child(const Job &job);

}  // namespace doctor
