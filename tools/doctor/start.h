// The library's own initialiser, called in a child and watched.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "child.h"

namespace doctor {

struct Start : Outcome {
  // What the initialiser returned, unless the process ended before.
  std::optional<int> status;
  // During which step it ended.
  std::string step;
  // What the library handed to the loader.
  std::string runtime;

  // Which of the library's sources gave that.
  std::string source() const { return fact("source"); }
  bool succeeds() const { return status.value_or(-1) >= 0; }
};

// The steps that end for want of something beside Java.
inline constexpr char loading_library[] = "loading the library";
inline constexpr char loading_runtime[] = "loading the runtime";
inline constexpr char creating_machine[] = "creating the machine";

using Environment = std::vector<std::pair<const char *, std::optional<std::string>>>;

// `changes` are made to the environment before; a variable without a value is unset.
Start start(const std::string &library, const Environment &changes = {});

// Loads the libraries one after the other. Of the facts, "error" is what the loader says of the
// first that does not load, and "no function" that the first of them has no such function.
Outcome load(const std::vector<std::string> &libraries, const char *function);

}  // namespace doctor
