// What keeps a start from succeeding: each tells the report what it finds.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "report.h"
#include "start.h"

namespace doctor {

// Whether the initialiser of the library of that name succeeds, and what to do if not: the one that
// was named, or else the one beside this program or where it was installed, or else the loader's.
bool examine(const std::string &name, Report &report);

// Why the search of a library in `directory` led to no runtime that could be loaded.
void explain_search(const Start &start, const std::string &directory, Report &report);

// What keeps the library from reading the lines of its configuration as they were meant, each with
// what to do about it.
std::vector<std::pair<std::string, std::string>> faults_of_conf(const std::string &path);

// What the process inherits: directories, locale, limits, options; and what of that may keep the
// library and the runtime of these paths from starting.
void describe_surroundings(Report &report);
void explain_surroundings(const std::string &library, const std::string &runtime, Report &report);

}  // namespace doctor
