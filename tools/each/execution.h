// The run of all jobs on the grid.
#ifndef EACH_EXECUTION_H
#define EACH_EXECUTION_H

#include "options.h"

namespace each {

// Runs all jobs and prints what they write; the exit status of the program. Throws when the run
// itself failed.
int execute(const Options &options);

}  // namespace each

#endif
