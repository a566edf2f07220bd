// Tells whether programs with this library can start Java on this machine, and what to do if not.
#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>
#include <iostream>
#include <stdexcept>

#include "causes.h"
#include "child.h"

namespace doctor {
namespace {

int run(int count, char **arguments) {
  CLI::App app(
      "Tells whether a program with libvantiro.so can start Java here, and what to do if not.\n"
      "Exit status 0 only when an initialiser would succeed.");
  std::string library;
  bool json = false;
  bool verbose = false;
  app.add_option("LIBRARY", library,
                 "the libvantiro.so to examine; without it, the one beside this program, or else "
                 "the one that the loader finds");
  app.add_flag("--json", json, "write the findings as JSON");
  app.add_flag("-v,--verbose", verbose, "write all that was found");
  int seconds = static_cast<int>(patience.count());
  app.add_option("--timeout", seconds, "how many seconds a start may take")
      ->check(CLI::Range(1, 3600));
  app.set_version_flag("--version", VANTIRO_VERSION_TEXT);
  CLI11_PARSE(app, count, arguments);

  patience = std::chrono::seconds(seconds);
  Report report;
  const bool succeeds = examine(library, report);
  if (json) {
    report.write_json(std::cout);
  } else {
    report.write_text(std::cout, verbose);
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
