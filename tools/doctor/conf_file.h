// The lines of VantiroDLL.conf: which one counts, and why others do not.
#pragma once

#include <string>

#include "report.h"

namespace doctor {

// Looks for what keeps the library from reading a line as it was meant. Whether the line that
// counts names no file for such a reason.
bool examine_conf_lines(const std::string &path, Report &report);

}  // namespace doctor
