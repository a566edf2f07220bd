// What the process inherits: its user, directories, limits, locale, and options for Java.
#pragma once

#include <sys/resource.h>

#include <string>
#include <vector>

#include "report.h"

namespace doctor {

// What the process may use of a resource, in that unit: a number or "unlimited".
std::string limit(__rlimit_resource resource, unsigned unit);

// `paths` are those that Java and the loader have to deal with.
void examine_surroundings(const std::vector<std::string> &paths, Report &report);

}  // namespace doctor
