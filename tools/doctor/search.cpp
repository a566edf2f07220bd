#include "search.h"

#include <strings.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>

#include "conf_file.h"
#include "files.h"
#include "host/discovery.h"
#include "runtimes.h"

namespace doctor {
namespace {

std::vector<std::string> asked;

bool note_and_open(const char *path) {
  asked.emplace_back(path);
  return vantiro::opens_for_reading(path);
}

class Walk {
 public:
  Walk(const std::string &directory, const ElfFile &library, Report &report)
      : directory_(directory),
        conf_(directory + "/VantiroDLL.conf"),
        library_(library),
        report_(report) {}

  Found run() {
    vantiro::find_runtime({buffer_}, directory_);
    const std::string runtime = buffer_;
    const std::string from = source();
    return {runtime, from, is_explained_};
  }

 private:
  std::string source() {
    if (ask_conf()) return "VantiroDLL.conf";
    if (ask("JAVA_HOME", vantiro::find_in_java_home)) return "JAVA_HOME";
    if (!report_.has_trouble()) explain_java_home();
    if (ask("PATH", vantiro::find_in_path)) return "PATH";
    if (!report_.has_trouble()) explain_path();
    return "the loader's own search";
  }

  void add_place(const std::string &source, const std::string &path, const std::string &result) {
    report_.add_row("places tried", {source, path, result});
  }

  bool ask_conf() {
    const std::string fault = why_unreadable(conf_);
    const bool found = vantiro::find_in_configuration({buffer_}, directory_);
    report_.tell("conf", conf_ + (fault.empty() ? "" : ", which " + fault));
    if (fault.empty()) {
      is_explained_ = examine_conf_lines(conf_, report_);
    } else if (exists(conf_)) {
      report_.trouble(conf_ + " " + fault,
                      "make it a plain text file that every user of the library may read");
    } else {
      explain_missing_conf();
    }
    add_place("VantiroDLL.conf", conf_,
              found ? "names " + std::string(buffer_) : "names no runtime");
    return found;
  }

  void explain_missing_conf() {
    for (const std::string &name : names_in(directory_)) {
      if (strcasecmp(name.c_str(), "VantiroDLL.conf") != 0) continue;
      report_.trouble(directory_ + "/" + name +
                          " is not read, since its name differs in the case "
                          "of its letters",
                      "rename it to VantiroDLL.conf");
    }
  }

  bool ask(const char *source, bool (*find)(const vantiro::Search &)) {
    asked.clear();
    const bool found = find({buffer_, note_and_open});
    if (asked.empty()) add_place(source, "", std::getenv(source) ? "has no entry" : "is not set");
    for (const std::string &path : asked) {
      const std::string fault = why_unreadable(path);
      add_place(source, path, fault.empty() ? "opens" : fault);
    }
    return found;
  }

  void explain_java_home() {
    const char *const value = std::getenv("JAVA_HOME");
    if (!value) return;
    const std::string home = value;
    const std::string said = "JAVA_HOME (" + home + ") ";
    if (!is_directory(home)) {
      const std::string fault = why_unreadable(home);
      report_.trouble(said + (fault.empty() ? "is a file and no directory" : fault),
                      "set it to the directory of a Java installation, or unset it");
      return;
    }
    explain_runtimes(said + "leads to no runtime library", runtimes_at(home));
  }

  // What is there is of another word size or age than the places that are tried.
  void explain_runtimes(const std::string &said, const std::vector<std::string> &found) {
    const std::string usable = first_usable(found, library_);
    std::string cause = said;
    if (!usable.empty()) {
      cause += "; " + usable + " would do, but lies where the library does not look";
    } else if (!found.empty()) {
      cause += "; " + found.front() + " " + why_no_runtime(found.front(), library_);
    } else {
      cause += ", and none lies elsewhere in that installation";
    }
    report_.trouble(cause, cure_by(found, library_, conf_));
  }

  void explain_path() {
    for (const std::string &place : asked) {
      if (name_of(place) == "libjvm.so") continue;
      const std::string fault = why_unreadable(place);
      if (fault.starts_with("does not exist") || fault.starts_with("cannot be reached")) continue;
      explain_launcher(place, fault);
    }
  }

  void explain_launcher(const std::string &launcher, const std::string &fault) {
    if (!fault.empty()) {
      report_.trouble("the java that PATH leads to, " + launcher + ", " + fault,
                      "mend that, or " + cure_by({}, library_, conf_));
      return;
    }
    struct stat status {};
    const bool is_link = lstat(launcher.c_str(), &status) == 0 && S_ISLNK(status.st_mode);
    const std::string real = real_path(launcher);
    if (is_link) {
      char target[4096] = "";
      if (readlink(launcher.c_str(), target, sizeof target - 1) > 0 && target[0] != '/') {
        report_.trouble(launcher + " is a link to " + target +
                            ", which the library takes relative to the current directory",
                        cure_by(runtimes_at(real), library_, conf_));
      }
      return;
    }
    if (read_elf(real).bits == 0) {
      report_.trouble("the java that PATH leads to, " + launcher +
                          ", is a script, and which runtime it starts cannot be told",
                      cure_by({}, library_, conf_));
      return;
    }
    explain_runtimes("the java that PATH leads to, " + launcher + ", leads to no runtime library",
                     runtimes_at(real));
  }

  const std::string directory_;
  const std::string conf_;
  const ElfFile &library_;
  Report &report_;
  bool is_explained_ = false;
  char buffer_[vantiro::path_capacity] = "";
};

}  // namespace

Found examine_search(const std::string &directory, const ElfFile &library, Report &report) {
  return Walk(directory, library, report).run();
}

}  // namespace doctor
