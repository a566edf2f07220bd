// The command line of vantiro-each.
#ifndef EACH_OPTIONS_H
#define EACH_OPTIONS_H

#include <chrono>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

namespace each {

// A call that cannot be carried out as it stands.
class WrongCall : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

// When the jobs that still run are stopped.
struct Halt {
  enum class Count { never, failed, succeeded, ended } of = Count::never;
  int after = 0;
};

struct Options {
  std::vector<std::string> command;
  std::vector<std::string> inputs;
  std::vector<std::filesystem::path> files;  // of each input, when they go to the jobs
  int jobs = 0;                              // at once; 0 leaves it to the settings
  std::chrono::seconds timeout{0};
  Halt halt;
  bool keep_order = false;
  bool tag = false;
  bool dry_run = false;
  bool transfer = false;
  std::filesystem::path settings;
  std::filesystem::path results;  // empty: outputs are printed and forgotten
  std::filesystem::path workdir;  // empty: each job has a directory of its own
  std::filesystem::path tmpdir;
};

// Ends the program when it was called for help; throws WrongCall.
Options read_options(int count, char **arguments);

}  // namespace each

#endif
