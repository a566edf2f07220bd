#include "causes.h"

#include <strings.h>

#include <cstdlib>
#include <filesystem>

#include "files.h"
#include "runtimes.h"
#include "words.h"

namespace doctor {
namespace {

const std::string conf_name = "VantiroDLL.conf";

class Search {
 public:
  Search(const Start &start, const std::string &directory, Report &report)
      : start_(start), directory_(directory), conf_(directory + "/" + conf_name), report_(report) {}

  void explain() {
    explain_conf();
    if (start_.runtime.find('/') != start_.runtime.npos) {
      if (!report_.has_trouble()) explain_runtime();
      return;
    }
    if (!report_.has_trouble()) explain_java_home();
    if (!report_.has_trouble()) explain_path();
    if (report_.has_trouble()) return;
    report_.trouble("no Java runtime was found: neither " + conf_name +
                        " nor JAVA_HOME nor PATH leads to one, and the loader says: " +
                        start_.output.substr(0, start_.output.find('\n')),
                    cure_by({}, conf_));
  }

 private:
  void explain_conf() {
    if (!exists(conf_)) {
      for (const std::string &name : names_in(directory_)) {
        if (strcasecmp(name.c_str(), conf_name.c_str()) != 0) continue;
        report_.trouble(directory_ + "/" + name + " is not read, since its name differs in case",
                        "rename it to " + conf_name);
      }
    } else if (const std::string fault = why_unreadable(conf_); !fault.empty()) {
      report_.trouble(conf_ + " " + fault, "make it a text file that every user may read");
    } else if (start_.source() != conf_name || !is_readable(start_.runtime)) {
      for (const auto &[cause, cure] : faults_of_conf(conf_)) report_.trouble(cause, cure);
    }
  }

  void explain_runtime() {
    const std::string fault = why_no_runtime(start_.runtime);
    if (fault.empty()) return;
    report_.trouble(start_.runtime + ", which " + start_.source() + " leads to, " + fault,
                    (fault.starts_with("cannot be re") ? "let that user read it, or " : "") +
                        cure_by(runtimes_at(start_.runtime), conf_));
  }

  void explain_java_home() {
    const char *const value = std::getenv("JAVA_HOME");
    if (!value) return;
    const std::string home = value;
    const bool is_there = !names_in(home).empty();
    explain_installation("JAVA_HOME (" + home + ") " + (is_there ? "" : "is no directory and ") +
                             "leads to no runtime library",
                         home);
  }

  // What is there is of another word size or age than the places that are tried.
  void explain_installation(std::string cause, const std::string &place) {
    const std::vector<std::string> found = runtimes_at(place);
    const std::string usable = first_usable(found);
    if (!usable.empty()) {
      cause += "; " + usable + " would do, but lies where the library does not look";
    } else if (!found.empty()) {
      cause += "; " + found.front() + " " + why_no_runtime(found.front());
    } else {
      cause += ", and none lies elsewhere in that installation";
    }
    report_.trouble(cause, cure_by(found, conf_));
  }

  void explain_path() {
    for (const auto &[name, place] : start_.facts) {
      if (name != "place" || name_of(place) != "java") continue;
      const std::string fault = why_unreadable(place);
      const std::string said = "the java that PATH leads to, " + place + ", ";
      if (fault.starts_with("does not exist") || fault.starts_with("cannot be reached")) continue;
      std::error_code error;
      const std::filesystem::path target = std::filesystem::read_symlink(place, error);
      if (!fault.empty()) {
        report_.trouble(said + fault, "mend that, or " + cure_by({}, conf_));
      } else if (!error && target.is_relative()) {
        report_.trouble(place + " is a link to " + target.string() +
                            ", which the library takes relative to the current directory",
                        cure_by(runtimes_at(real_path(place)), conf_));
      } else if (bits_of(place) == 0) {
        report_.trouble(said + "is a script, and which runtime it starts cannot be told",
                        cure_by({}, conf_));
      } else if (error) {
        explain_installation(said + "leads to no runtime library", real_path(place));
      }
    }
  }

  const Start &start_;
  const std::string directory_;
  const std::string conf_;
  Report &report_;
};

}  // namespace

void explain_search(const Start &start, const std::string &directory, Report &report) {
  Search(start, directory, report).explain();
}

}  // namespace doctor
