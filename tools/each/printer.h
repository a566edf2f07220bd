// What the jobs wrote, on this program's own standard output and standard error.
#ifndef EACH_PRINTER_H
#define EACH_PRINTER_H

#include <filesystem>
#include <string>
#include <vector>

#include "options.h"

namespace each {

// Writes all bytes to a descriptor of this process; throws when they do not arrive.
void write_all(int descriptor, const char *bytes, std::size_t count);

class Printer {
 public:
  // The outputs of job N lie in job-N below the directory.
  Printer(const Options &options, std::filesystem::path directory);

  // Prints the jobs that ended by now, or keeps them until those before them have.
  void print(const std::vector<int> &ended);
  // Prints what was kept, when no more jobs will end.
  void finish();

 private:
  void print(int job) const;
  void copy(int job, const std::filesystem::path &file, int descriptor) const;

  const Options &options_;
  std::filesystem::path directory_;
  std::vector<bool> waits_;
  int next_ = 1;  // in the order of the inputs
};

}  // namespace each

#endif
