// The command of each job, made of what the caller wrote and of the job's input.
#ifndef EACH_COMMAND_H
#define EACH_COMMAND_H

#include <string>
#include <vector>

#include "options.h"

namespace each {

class Command {
 public:
  explicit Command(const Options &options);

  // The words of one job's command as a shell reads them, whatever bytes are in them.
  std::string line(int job, const std::string &input) const;
  // What the shell of the job is to do.
  std::string script(int job, const std::string &input) const;

 private:
  std::vector<std::string> words_;
  std::string workdir_;
};

}  // namespace each

#endif
