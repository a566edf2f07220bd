#include "causes.h"

#include <fstream>
#include <regex>

namespace doctor {
namespace {

struct Fault {
  const char *pattern;
  const char *words;
};

// The first that fits a line with JVMPATH in it tells what is wrong.
constexpr Fault faults[] = {
    {"\r[^\n]", "is several lines that end in a lone carriage return"},
    {"^[ \t]*#", ""},
    {"^\xef\xbb\xbf", "begins with a byte-order mark"},
    {"^[^=]*$", "has no '='"},
    {"^([ \t]+JVMPATH[ \t]*|JVMPATH[ \t]+)=", "has blanks around JVMPATH"},
    {"^JVMPATH=+\r?$", "names nothing"},
    {"^JVMPATH=.*=", "has a second '=', and the path ends there"},
    {"^JVMPATH=([ \t]|.*[ \t]\r?$)", "has blanks around the path, which count"},
    {"^JVMPATH=.*['\"]", "has quotes around the path, which count"},
    {"^JVMPATH=.*#", "has a comment behind the path, which counts"},
    {"^JVMPATH=~", "has a '~', which only shells replace"},
    {"^JVMPATH=.*[$%]", "has a variable, which is not replaced"},
    {"^JVMPATH=[^/]", "has a path that is relative to the current directory"},
    {"^JVMPATH=", ""},
    {"^[ \t]*[Jj][Vv][Mm][Pp][Aa][Tt][Hh][ \t]*=", "does not have JVMPATH in capital letters"},
    {"", "has more than JVMPATH in front of the '='"},
};

std::string fault_of(const std::string &line) {
  for (const auto &[pattern, words] : faults) {
    if (std::regex_search(line, std::regex(pattern))) return words;
  }
  return "";
}

// The path of the line without what people put around it.
std::string as_meant(const std::string &line) {
  static const std::regex around("^[^=]*=[ \t]*|[ \t]*#.*|['\"\r]|[ \t]+$");
  const std::string meant = std::regex_replace(line, around, "");
  return meant.starts_with('/') ? meant : "/the/path/of/libjvm.so";
}

}  // namespace

std::vector<std::pair<std::string, std::string>> faults_of_conf(const std::string &path) {
  static const std::regex key("JVMPATH", std::regex::icase);
  std::vector<std::pair<std::string, std::string>> found;
  std::ifstream file(path, std::ios::binary);
  int number = 1;
  for (std::string line; std::getline(file, line); ++number) {
    // Of longer lines the library reads pieces, and these expressions would exhaust the stack.
    if (line.size() > 4096) line.resize(4096);
    const bool has_zeros = std::erase(line, '\0') > 0;
    if (!std::regex_search(line, key)) continue;
    const std::string fault = has_zeros ? "is UTF-16, or has zero bytes" : fault_of(line);
    if (fault.empty()) continue;
    found.emplace_back(
        "line " + std::to_string(number) + " of " + path + " (" + line + ") " + fault,
        fault.starts_with("has a second")
            ? "name the runtime by way of a link whose path has no '='"
            : "write JVMPATH=" + as_meant(line) + " as a line of its own in " + path +
                  ", as plain text with nothing around it");
  }
  return found;
}

}  // namespace doctor
