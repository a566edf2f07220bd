// What the grid says of the jobs that failed, in this program's words.
#ifndef EACH_FAILURES_H
#define EACH_FAILURES_H

#include <string>
#include <vector>

namespace each {

// A line for each of the failures that a run's message tells, which speaks of the command that
// all jobs share. The ends of their standard errors are left out: they were printed whole.
std::string failures(const std::string &message, const std::string &command,
                     const std::vector<std::string> &inputs);

}  // namespace each

#endif
