#include "conf_file.h"

#include <strings.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "files.h"
#include "host/discovery.h"

namespace doctor {
namespace {

// No configuration is that long.
constexpr std::uint64_t most_read = 1 << 20;
const std::string key = "JVMPATH";
const std::string blanks = " \t";
const std::string is_comment = "is a comment";

std::string trimmed(const std::string &text) {
  const std::size_t first = text.find_first_not_of(blanks);
  if (first == text.npos) return "";
  return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

// What stands in the way of a line whose key is not the one that the library looks for.
std::string why_not_read(const std::string &line) {
  const std::size_t equals = line.find('=');
  const std::string before = line.substr(0, equals);
  if (line.find('\r') < line.size() - 1)
    return "is several lines that end in a lone carriage return";
  if (trimmed(before).starts_with('#')) return is_comment;
  if (before.starts_with("\xef\xbb\xbf")) return "begins with a byte-order mark";
  if (equals == line.npos) return "has no '='";
  if (trimmed(before) == key) return "has blanks around " + key;
  if (strcasecmp(trimmed(before).c_str(), key.c_str()) == 0) {
    return "does not have " + key + " in capital letters";
  }
  if (before == key) return "names nothing";
  return "has more than " + key + " in front of the '='";
}

// What may be wrong with a value that names no file.
std::string why_value_is_wrong(const std::string &line, const std::string &value) {
  if (trimmed(value) != value) return "has blanks around the path, which count";
  if (value.find_first_of("'\"") != value.npos) return "has quotes around the path, which count";
  if (value.find('#') != value.npos) return "has a comment behind the path, which counts";
  if (value.starts_with('~')) return "has a '~', which only shells replace";
  if (value.find_first_of("$%") != value.npos) return "has a variable, which is not replaced";
  const std::size_t end = line.find(value) + value.size();
  if (end < line.size() && line[end] == '=') return "has a second '=', and the path ends there";
  if (!value.starts_with('/')) return "has a path that is relative to the current directory";
  return "";
}

bool mentions_key(const std::string &line) {
  return strcasestr(line.c_str(), key.c_str()) != nullptr;
}

// Letters of two bytes each, as some editors of other systems write.
bool is_utf16(const std::string &text) {
  return text.starts_with("\xff\xfe") || text.starts_with("\xfe\xff") ||
         text.find('\0') != text.npos;
}

// The value without what shells and people put around a path.
std::string as_meant(const std::string &value) {
  std::string meant = value.substr(0, value.find('#'));
  std::erase_if(meant, [](char c) { return c == '"' || c == '\'' || c == '\r'; });
  meant = trimmed(meant);
  if (!meant.starts_with('~') && !meant.starts_with('$')) return meant;
  const std::size_t name_end = std::min(meant.find('/'), meant.size());
  std::string name = meant.substr(1, name_end - 1);
  std::erase_if(name, [](char c) { return c == '{' || c == '}'; });
  const char *const replacement = std::getenv(meant[0] == '~' ? "HOME" : name.c_str());
  return (replacement ? replacement : "") + meant.substr(name_end);
}

std::string cure_for(const std::string &path, const std::string &line) {
  const std::string meant = as_meant(line.substr(std::min(line.find('='), line.size() - 1) + 1));
  if (meant.find('=') != meant.npos) {
    return "name the runtime by way of a link whose path has no '='";
  }
  return "write " + key + "=" + (meant.starts_with('/') ? meant : "/the/path/of/libjvm.so") +
         " as a line of its own in " + path + ", with nothing around it";
}

}  // namespace

bool examine_conf_lines(const std::string &path, Report &report) {
  const File file(path);
  const std::string text = file.bytes(0, std::min(file.size(), most_read)).value_or("");
  if (is_utf16(text)) {
    report.trouble(path + " is UTF-16, or has zero bytes, and is not understood",
                   "save it as plain ASCII or UTF-8 text without a byte-order mark");
    return false;
  }

  bool taken = false;
  bool taken_is_wrong = false;
  int count = 0;
  for (std::size_t start = 0; start < text.size(); ++count) {
    // The library reads longer lines in pieces.
    const std::size_t end = std::min(text.find('\n', start), text.size());
    const std::size_t length = std::min(end + 1 - start, vantiro::path_capacity - 1);
    const std::string line = text.substr(start, std::min(length, end - start));
    start += length;
    if (!mentions_key(line)) continue;

    std::string pieces = line;
    const char *const value = vantiro::runtime_named_by(pieces.data());
    const std::string said =
        "line " + std::to_string(count + 1) + " of " + path + " (" + line + ") ";
    if (taken) {
      report.add_row("conf lines", {line, "is ignored: the first line counts"});
    } else if (value) {
      taken = true;
      const std::string fault = is_readable(value) ? "" : why_value_is_wrong(line, value);
      report.add_row("conf lines", {line, "is taken" + (fault.empty() ? "" : ", and " + fault)});
      taken_is_wrong = !fault.empty();
      if (taken_is_wrong) report.trouble(said + fault, cure_for(path, line));
    } else {
      const std::string fault = why_not_read(line);
      report.add_row("conf lines", {line, "is ignored: it " + fault});
      if (fault != is_comment)
        report.trouble(said + "is ignored: it " + fault, cure_for(path, line));
    }
  }
  return taken_is_wrong;
}

}  // namespace doctor
