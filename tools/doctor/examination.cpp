#include "causes.h"

#include <algorithm>
#include <cstdlib>
#include <regex>
#include <sstream>

#include "files.h"
#include "runtimes.h"
#include "start.h"
#include "vantiro/status.h"
#include "words.h"

namespace doctor {
namespace {

const std::string management_class = "fi.vantiro.user.ManagementImpl";
const char *const options_of_java[] = {"JAVA_TOOL_OPTIONS", "_JAVA_OPTIONS"};

bool has(const std::string &text, const std::string &part) { return text.find(part) != text.npos; }

std::vector<std::string> lines_of(const std::string &text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) {
    // What Java repeats of its options is no complaint.
    if (!line.empty() && !line.starts_with("Picked up ")) lines.push_back(line);
  }
  return lines;
}

// What Java wrote of exceptions: the head of a stack trace, and the causes.
std::string exceptions_in(const std::string &output) {
  std::string found;
  for (const std::string &line : lines_of(output)) {
    const std::size_t at = line.find(line.starts_with("Caused by: ") ? ": " : "\" ");
    if (!line.starts_with("Exception in thread ") && !line.starts_with("Caused by: ")) continue;
    found += (found.empty() ? "" : ", caused by ") + line.substr(std::min(at, line.size() - 2) + 2);
  }
  return found;
}

// The last exception in the machine's own log whose type begins like that.
std::string logged_exception(const std::string &log, const std::string &type) {
  const std::regex entry("Exception <a '(" + type + "[^']*)'\\{\\w+\\}(.*)>");
  std::string last;
  for (const std::string &line : lines_of(log)) {
    std::smatch parts;
    const std::string start = line.substr(0, 500);
    if (std::regex_search(start, parts, entry)) last = parts[1].str() + parts[2].str();
  }
  std::replace(last.begin(), last.end(), '/', '.');
  return last;
}

class Examination {
 public:
  Examination(std::string library, Report &report)
      : library_(std::move(library)), report_(report) {}

  bool run() {
    report_.tell("library", library_);
    describe_surroundings(report_);
    if (!may_be_loaded()) return false;
    start_ = start(library_);
    if (start_.step != loading_library) library_ = start_.fact("library");
    describe();
    if (!start_.succeeds()) explain();
    return start_.succeeds();
  }

 private:
  bool may_be_loaded() {
    // The loader searches for a bare name.
    if (!has(library_, "/")) return true;
    const std::string fault = why_unreadable(library_);
    const int bits = bits_of(library_);
    if (!fault.empty()) {
      report_.trouble(library_ + " " + fault, "name the library that the program loads");
    } else if (bits != 0 && bits != bits_here) {
      report_.trouble(library_ + " is a " + std::to_string(bits) +
                          "-bit library, and this doctor is a " + std::to_string(bits_here) +
                          "-bit program, which cannot load it",
                      "run the vantiro-doctor that was built together with that library");
    }
    return !report_.has_trouble();
  }

  void describe() {
    for (const auto &[name, fact] : start_.facts) {
      const std::string fault = why_unreadable(fact);
      if (name == "place") report_.tell("places tried", fact, fault.empty() ? "opens" : fault);
    }
    if (!start_.runtime.empty()) {
      report_.tell("runtime", start_.runtime + ", from " + start_.source());
    }
    for (const auto &[name, fact] : start_.facts) {
      if (has(name, ".")) report_.tell("Java", name, fact);
    }
    if (!start_.output.empty()) report_.tell("output", start_.output);
    report_.tell("library", library_);
    report_.conclude(start_.succeeds(), how_it_went());
  }

  std::string how_it_went() const {
    if (!start_.status && start_.end.empty()) return "the library does not load";
    if (!start_.status) return "a program that starts Java " + start_.end + " while " + start_.step;
    const std::string text = start_.fact("status text");
    return "it gives " + std::to_string(*start_.status) + (text.empty() ? "" : ": " + text);
  }

  void explain() {
    const bool reads_behind_end = has(start_.end, "Bus error");
    if (reads_behind_end && start_.step == loading_runtime) {
      report_.trouble(words("a file of the Java runtime is cut short"), start_.runtime);
      return;
    }
    explain_link();
    explain_surroundings(library_, start_.runtime, report_);
    if (start_.step == loading_library) {
      if (!report_.has_trouble()) explain_library();
    } else if (start_.step == loading_runtime || start_.status == VANTIRO_ERROR_RUNTIME_NOT_FOUND) {
      explain_search(start_, directory_of(library_), report_);
      if (!report_.has_trouble()) explain_status("");
    } else {
      explain_machine();
    }
  }

  // What lies beside the target of a link is not found.
  void explain_link() {
    const std::string target = real_path(library_);
    std::string names;
    for (const std::string name : {"VantiroDLL.conf", "vantiro.jar"}) {
      if (exists(directory_of(library_) + "/" + name) || !exists(directory_of(target) + "/" + name))
        continue;
      names += (names.empty() ? "" : " and ") + name;
    }
    if (names.empty()) return;
    report_.trouble(library_ + " is a link to " + target + ", and the library looks for " + names +
                        " beside the link",
                    "put links to the files beside that link too, or load " + target);
  }

  void explain_library() {
    const std::string error = start_.fact("library does not load");
    report_.trouble(
        library_ + (error.empty()
                        ? " is cut short, or no library: a process that loads it " + start_.end
                        : " does not load: " + error),
        "install the library again, or name another: vantiro-doctor /the/path/of/libvantiro.so");
  }

  void explain_machine() {
    if (start_.step == creating_machine) explain_runtime(start_.runtime, report_);
    explain_options();
    const std::string archive = directory_of(library_) + "/vantiro.jar";
    const std::string fault = why_unreadable(archive);
    if (!fault.empty() && !report_.has_trouble()) {
      report_.trouble(archive + " " + fault,
                      "put the management library's archive there, or the local grid's, which is "
                      "built together with the library");
    }
    if (!report_.has_trouble()) explain_status(complaint());
  }

  // Whether options from outside are what stands in the way is tried.
  void explain_options() {
    std::string options;
    Environment without;
    for (const char *const name : options_of_java) {
      const char *const value = std::getenv(name);
      if (value) options += (options.empty() ? "" : " and ") + std::string(name) + "=" + value;
      if (value) without.emplace_back(name, std::nullopt);
    }
    if (without.empty() || !start(library_, without).succeeds()) return;
    report_.trouble(words("an option in `JAVA_TOOL_OPTIONS`"),
                    options + (said().empty() ? "" : "; Java says: " + said()));
  }

  // What Java says of the cause. A machine may end its process without a word, and does not tell
  // that an archive is damaged: then it is asked for its log.
  std::string complaint() {
    const std::string thrown = exceptions_in(start_.output);
    if (!thrown.empty() && !has(thrown, "ClassNotFoundException: " + management_class))
      return thrown;
    if (start_.end.starts_with("did not")) return "";
    const char *const options = std::getenv("JAVA_TOOL_OPTIONS");
    const Start again =
        start(library_, {{"JAVA_TOOL_OPTIONS", (options ? options : "") +
                                                   std::string(" -Xlog:exceptions=info:stdout")}});
    const std::string damage = logged_exception(again.output, "java/util/zip/");
    if (!damage.empty() || !thrown.empty()) return damage.empty() ? thrown : damage;
    const std::string last = logged_exception(again.output, "");
    return last.empty() ? said() : last;
  }

  // The first lines of what Java wrote, without stack traces.
  std::string said() const {
    std::string text;
    int count = 0;
    for (const std::string &line : lines_of(start_.output)) {
      if (line.starts_with('\t') || ++count > 3) break;
      text += (text.empty() ? "" : "; ") + line;
    }
    return text;
  }

  void explain_status(const std::string &complaint) {
    static const std::regex other_class(
        "NoClassDefFoundError: (?!fi/vantiro/user/ManagementImpl(,|$))");
    if (!start_.status) {
      report_.trouble(how_it_went() + (complaint.empty() ? "" : ": " + complaint),
                      "see what it wrote (--verbose), and whether another runtime or archive does "
                      "the same");
    } else if (std::regex_search(complaint, other_class)) {
      report_.trouble(words("`vantiro.jar` needs a class"), complaint);
    } else if (const auto row = words_of(*start_.status)) {
      report_.trouble(*row, complaint);
    } else {
      report_.trouble(words("the management library's own initialiser"),
                      std::to_string(*start_.status) + ", " + start_.fact("status text") + ": " +
                          start_.fact("message"));
    }
  }

  std::string library_;
  Report &report_;
  Start start_;
};

std::string find_library(const std::string &name) {
  if (!name.empty()) return has(name, "/") || !exists(name) ? name : "./" + name;
  const std::string own = directory_of(real_path("/proc/self/exe"));
  for (const char *const folder : {"", "/../" VANTIRO_LIBDIR "/vantiro", "/../lib"}) {
    const std::string path = real_path(own + folder) + "/" VANTIRO_SONAME;
    if (exists(path)) return path;
  }
  return VANTIRO_SONAME;
}

}  // namespace

bool examine(const std::string &name, Report &report) {
  return Examination(find_library(name), report).run();
}

}  // namespace doctor
