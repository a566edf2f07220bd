#include "failures.h"

#include <sstream>

namespace each {
namespace {

constexpr std::size_t longest_input = 60;

std::string shown(std::string input) {
  if (input.size() > longest_input) input = input.substr(0, longest_input) + "...";
  for (char &character : input) {
    if (static_cast<unsigned char>(character) < ' ' || character == '\x7f') character = '?';
  }
  return input;
}

}  // namespace

std::string failures(const std::string &message, const std::string &command,
                     const std::vector<std::string> &inputs) {
  const std::string before_reason = " failed: " + command + ": ";
  std::istringstream lines(message);
  std::string told;
  bool is_of_job = false;  // the end of its standard error
  for (std::string line; std::getline(lines, line);) {
    std::size_t job = 0;
    const auto found = line.find(before_reason);
    if (found != std::string::npos && line.starts_with("job ")) {
      job = std::stoul(line.substr(line.find(' ')));
    }
    if (job > 0 && job <= inputs.size()) {
      is_of_job = true;
      told += "vantiro-each: job " + std::to_string(job) + " (" + shown(inputs[job - 1]) +
              "): " + line.substr(found + before_reason.size()) + "\n";
    } else {
      // The launcher's words were printed by nobody.
      const bool is_summary = line.starts_with("and ") && line.ends_with(" more jobs failed");
      if (is_summary || line == "the launcher said:") is_of_job = false;
      if (!is_of_job) told += line + "\n";
    }
  }
  return told;
}

}  // namespace each
