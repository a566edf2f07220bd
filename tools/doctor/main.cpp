// Tells whether programs with this library can start Java on this machine, and what to do if not.
#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>
#include <iostream>
#include <stdexcept>

#include "diagnosis.h"
#include "files.h"
#include "library.h"
#include "runtimes.h"
#include "surroundings.h"

namespace doctor {
namespace {

bool examine(const std::string &name, Report &report) {
  const std::string library = find_library(name);
  if (library.empty()) {
    report.trouble("there is no " + (name.empty() ? VANTIRO_SONAME : name) +
                       " beside this program, and the loader finds none",
                   "name the library's file: vantiro-doctor /the/path/of/libvantiro.so");
    return false;
  }
  const ElfFile file = examine_library(library, report);
  if (!is_readable(library)) return false;
  const std::string directory = directory_of(library);
  const Found found = examine_search(directory, file, report);
  report.tell("runtime", found.runtime + ", from " + found.source);
  if (found.runtime.find('/') != found.runtime.npos) {
    for (const auto &[part, state] : needs_of_runtime(found.runtime)) {
      report.tell("what the runtime needs", part, state);
    }
  }
  examine_archives(library, report);
  examine_surroundings({library, found.runtime}, report);
  const bool succeeds = examine_start({library, directory, found.runtime, {}}, found, file, report);
  if (succeeds) report.succeed();
  return succeeds;
}

int run(int count, char **arguments) {
  CLI::App app(
      "Tells whether a program with libvantiro.so can start Java here, and what to do if not.\n"
      "Exit status 0 only when an initialiser would succeed.");
  std::string library;
  bool json = false;
  app.add_option("LIBRARY", library,
                 "the libvantiro.so to examine; without it, the one beside this program, or else "
                 "the one that the loader finds");
  app.add_flag("--json", json, "write the findings as JSON");
  app.set_version_flag("--version", VANTIRO_VERSION_TEXT);
  CLI11_PARSE(app, count, arguments);

  Report report;
  const bool succeeds = examine(library, report);
  if (json) {
    report.write_json(std::cout);
  } else {
    report.write_text(std::cout);
  }
  if (!std::cout.flush()) throw std::runtime_error("standard output cannot be written");
  return succeeds ? 0 : 1;
}

}  // namespace
}  // namespace doctor

int main(int count, char **arguments) {
  try {
    return doctor::run(count, arguments);
  } catch (const std::exception &error) {
    std::fprintf(stderr, "vantiro-doctor: the examination itself failed: %s\n", error.what());
    return 2;
  }
}
