// The inputs, of which each becomes a job.
#ifndef EACH_INPUTS_H
#define EACH_INPUTS_H

#include <string>
#include <vector>

namespace each {

// Those of a file, or of standard input for "-", each ended by a newline or by NUL. They are bytes,
// in no encoding.
std::vector<std::string> read_inputs(const std::string &file, char end);

}  // namespace each

#endif
