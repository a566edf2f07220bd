// What a start that went wrong says of the cause.
#pragma once

#include "child.h"
#include "search.h"
#include "start.h"

namespace doctor {

// Starts the runtime, and tells how that went. Whether an initialiser succeeds.
bool examine_start(const Attempt &attempt, const Found &found, const ElfFile &library,
                   Report &report);

}  // namespace doctor
