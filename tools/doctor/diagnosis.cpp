#include "diagnosis.h"

#include <sys/resource.h>

#include <algorithm>
#include <cstdlib>
#include <sstream>

#include "bridge/status_texts.h"
#include "files.h"
#include "runtimes.h"
#include "status_words.h"
#include "surroundings.h"
#include "vantiro/status.h"

namespace doctor {
namespace {

bool has(const std::string &text, const std::string &part) { return text.find(part) != text.npos; }

// The line of `text` with that part; empty when there is none.
std::string line_with(const std::string &text, const std::string &part) {
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    // What Java repeats of its options is no complaint.
    if (has(line, part) && !line.starts_with("Picked up ")) return line;
  }
  return "";
}

// Each exception that Java's own log tells of, once, the last one last.
std::vector<std::string> exceptions_in(const std::string &log) {
  std::vector<std::string> found;
  std::istringstream lines(log);
  for (std::string line; std::getline(lines, line);) {
    const std::size_t type = line.find("Exception <a '");
    const std::size_t address = line.find("'{", type);
    const std::size_t end = line.find('}', address);
    if (type == line.npos || end == line.npos) continue;
    std::string exception = line.substr(type + 14, address - type - 14);
    std::replace(exception.begin(), exception.end(), '/', '.');
    exception += line.substr(end + 1, line.rfind('>') - end - 1);
    if (std::find(found.begin(), found.end(), exception) == found.end()) found.push_back(exception);
  }
  return found;
}

// The options for Java that the environment holds, as they are set there.
std::string options_from_outside() {
  std::string options;
  for (const char *const name : {"JAVA_TOOL_OPTIONS", "_JAVA_OPTIONS"}) {
    const char *const value = std::getenv(name);
    if (value) options += (options.empty() ? "" : " and ") + std::string(name) + "=" + value;
  }
  return options;
}

class Diagnosis {
 public:
  Diagnosis(const Attempt &attempt, const Found &found, const ElfFile &library, Report &report)
      : attempt_(attempt),
        found_(found),
        library_(library),
        report_(report),
        outcome_(run_in_child([&](Tell tell) { start(attempt, tell); })) {}

  bool run() {
    if (fact("step") == creating_machine && outcome_.end.starts_with("ended")) {
      look_for_silent_cause();
    }
    describe();
    compare_class_path();
    if (has_status() && status() >= 0) return true;
    explain();
    return false;
  }

 private:
  bool has_status() const { return !fact("status").empty(); }
  int status() const { return has_status() ? std::stoi(fact("status")) : -1; }
  std::string fact(const char *name) const { return outcome_.fact(name); }

  // A machine that ends its process may do so without a word; its log of exceptions has the cause.
  void look_for_silent_cause() {
    Attempt again = attempt_;
    again.further_options = {"-Xlog:exceptions=info:stdout"};
    const Outcome logged = run_in_child([&](Tell tell) { start(again, tell); });
    thrown_ = exceptions_in(logged.output);
    if (thrown_.size() > 4) thrown_.erase(thrown_.begin(), thrown_.end() - 4);
  }

  std::string thrown() const {
    std::string lines;
    for (const std::string &exception : thrown_) lines += (lines.empty() ? "" : "\n") + exception;
    return lines;
  }

  void describe() {
    for (const auto &[name, fact] : outcome_.facts) {
      if (name != "step" && name != "status") report_.tell("start", name, fact);
    }
    if (!outcome_.end.empty()) {
      report_.tell("start", "end", "the process " + outcome_.end + " while " + fact("step"));
    }
    if (!thrown_.empty()) report_.tell("start", "exceptions before the end", thrown());
    if (!outcome_.output.empty()) report_.tell("start", "output", outcome_.output);
    if (!has_status()) return;
    const char *const text = vantiro::native_text(status());
    report_.tell("an initialiser gives",
                 std::to_string(status()) + (text ? std::string(": ") + text : ""));
  }

  void compare_class_path() {
    const std::string path = fact("class path");
    if (!has(options_from_outside(), "-Djava.class.path=") ||
        class_path_option(attempt_.directory) == "-Djava.class.path=" + path) {
      return;
    }
    trouble("the class path is not the library's but " + path + ": " + options_from_outside() +
                " replaces it",
            "take -Djava.class.path out of it");
  }

  void trouble(const std::string &cause, const std::string &cure) { report_.trouble(cause, cure); }

  void explain() {
    if (!explain_runtime() && !explain_symptom() && !report_.has_trouble()) explain_status();
  }

  // Whether the runtime's file alone is enough to know why.
  bool explain_runtime() {
    const std::string conf = attempt_.directory + "/VantiroDLL.conf";
    const bool not_loaded = status() == VANTIRO_ERROR_RUNTIME_NOT_FOUND;
    if (!has(found_.runtime, "/")) {
      if (!not_loaded || report_.has_trouble()) return false;
      trouble(
          "no Java runtime was found, neither VantiroDLL.conf nor JAVA_HOME nor PATH leads to "
          "one, and the loader says: " +
              fact("loader"),
          cure_by({}, library_, conf));
      return true;
    }
    if (found_.is_explained) return true;
    const std::string fault = why_no_runtime(found_.runtime, library_);
    if (fault.empty()) return false;
    const std::string permission =
        fault.starts_with("cannot be") ? "give that user the right to read it, or " : "";
    trouble(found_.runtime + ", which " + found_.source + " leads to, " + fault,
            permission + cure_by(runtimes_at(found_.runtime), library_, conf));
    return true;
  }

  // What Java or the loader said, and what it means.
  struct Symptom {
    const char *part;
    void (Diagnosis::*explain)(const std::string &line);
  };

  bool explain_symptom() {
    static constexpr Symptom symptoms[] = {
        {"Too many open files", &Diagnosis::explain_files},
        {"pthread_create failed", &Diagnosis::explain_threads},
        {"unable to create native thread", &Diagnosis::explain_threads},
        {"Could not reserve enough space", &Diagnosis::explain_memory},
        {"insufficient memory", &Diagnosis::explain_memory},
        {"Cannot allocate memory", &Diagnosis::explain_memory},
        {"OutOfMemoryError", &Diagnosis::explain_memory},
        {"Unrecognized", &Diagnosis::explain_options},
        {"Unmatched quote", &Diagnosis::explain_options},
        {"Invalid ", &Diagnosis::explain_options},
        {"Improperly specified", &Diagnosis::explain_options},
        {"stack size specified", &Diagnosis::explain_options},
        {"heap size", &Diagnosis::explain_options},
        {"Conflicting", &Diagnosis::explain_options},
        {"manifest missing", &Diagnosis::explain_options},
        {"agent library", &Diagnosis::explain_options},
        {"libz.so.1", &Diagnosis::explain_zlib},
        {"UnsupportedClassVersionError", &Diagnosis::explain_age},
        {"NoClassDefFoundError: ", &Diagnosis::explain_missing_class},
        {"unmappable characters", &Diagnosis::explain_encoding},
        {"InvalidPathException", &Diagnosis::explain_encoding},
        {"boot class path", &Diagnosis::explain_incomplete},
        {"jimage library", &Diagnosis::explain_incomplete},
        {"Unable to load native library", &Diagnosis::explain_incomplete},
        {"boot layer", &Diagnosis::explain_incomplete},
        {"UnsatisfiedLinkError: ", &Diagnosis::explain_incomplete},
        {"InternalError: Error loading", &Diagnosis::explain_incomplete},
    };
    const std::string all =
        outcome_.output + "\n" + fact("loader") + "\n" + fact("exception") + "\n" + thrown();
    for (const Symptom &symptom : symptoms) {
      const std::string line = line_with(all, symptom.part);
      if (line.empty()) continue;
      (this->*symptom.explain)(line);
      return true;
    }
    return false;
  }

  void explain_files(const std::string &) {
    trouble("the process may not open enough files: ulimit -n is " + limit(RLIMIT_NOFILE, 1),
            "raise it to 256 or more before the program starts");
  }

  void explain_threads(const std::string &line) {
    trouble("the process may not start the threads that Java needs: ulimit -u is " +
                limit(RLIMIT_NPROC, 1) + ", -v is " + limit(RLIMIT_AS, 1024) + " (" + line + ")",
            "raise these limits, or that of the container, before the program starts");
  }

  void explain_memory(const std::string &line) {
    const std::string options = options_from_outside();
    trouble("the process may not have the memory that Java asks for: " + line + "; ulimit -v is " +
                limit(RLIMIT_AS, 1024) + (options.empty() ? "" : ", with " + options),
            "raise ulimit -v to 1000000 or more, or let Java ask for less, for instance by "
            "_JAVA_OPTIONS='-Xmx64m -XX:ReservedCodeCacheSize=32m'");
  }

  void explain_options(const std::string &line) {
    trouble("Java refuses an option that the environment holds, " + options_from_outside() + ": " +
                line,
            "mend or unset that variable");
  }

  void explain_zlib(const std::string &) {
    const std::string bits = std::to_string(library_.bits);
    trouble("the Java runtime cannot open archives for want of a " + bits + "-bit libz.so.1",
            "install it (on Debian " +
                std::string(library_.bits == 32 ? "the package lib32z1 or zlib1g:i386" : "zlib1g") +
                "), or put it into the lib folder of the runtime");
  }

  void explain_age(const std::string &line) {
    trouble(
        "a class was built for a newer Java than the runtime's, " + fact("version") + ": " + line,
        "name a newer runtime in VantiroDLL.conf, or use archives built for this one");
  }

  void explain_encoding(const std::string &line) {
    if (report_.has_trouble()) return;
    trouble("Java cannot handle the name of a file in the encoding of the locale: " + line,
            "set LC_ALL=C.UTF-8, or use a path of plain letters");
  }

  void explain_missing_class(const std::string &line) {
    static const std::string mark = "NoClassDefFoundError: ";
    std::string name = line.substr(line.find(mark) + mark.size());
    name.resize(std::min(name.find(','), name.size()));
    if (name == "fi/vantiro/user/ManagementImpl") {
      if (!report_.has_trouble()) explain_status();
    } else {
      trouble("vantiro.jar needs the class " + name + ", which is in none of the three archives",
              "put the other archives that go with it beside the library");
    }
  }

  void explain_incomplete(const std::string &line) {
    if (has(found_.runtime, ":")) return;
    trouble("the Java runtime of " + found_.runtime + " is not complete: " + line,
            "install the runtime again as a whole");
  }

  void explain_status() {
    const std::string exception = fact("exception");
    const std::string options = options_from_outside();
    if (!fact("library does not load").empty()) {
      trouble(attempt_.library + " does not load: " + fact("library does not load"),
              "install the library again");
    } else if (status() == VANTIRO_ERROR_RUNTIME_NOT_FOUND) {
      trouble(found_.runtime + " does not load: " + fact("loader"),
              "install the runtime again, or name another in VantiroDLL.conf");
    } else if (!has_status()) {
      trouble("a program that starts Java " + outcome_.end + " while " + fact("step") +
                  (thrown_.empty() ? "" : ": " + thrown_.back()) +
                  (options.empty() ? "" : ", with " + options),
              outcome_.output.empty() ? "see whether another runtime or archive does the same"
                                      : "see what it wrote, which stands above under output");
    } else if (exception.starts_with("java.lang.ExceptionInInitializerError")) {
      trouble("a static initialiser of the management class threw an exception: " + exception,
              "the exception names the cause");
    } else if (status() > -11) {
      trouble("the management library's own initialiser gives " + std::to_string(status()) + ", " +
                  fact("message"),
              "mend the settings that it names");
    } else {
      for (const StatusWords &words : status_words) {
        if (words.status != status()) continue;
        trouble(words.cause + (exception.empty() ? "" : ": " + exception), words.cure);
      }
    }
  }

  const Attempt &attempt_;
  const Found &found_;
  const ElfFile &library_;
  Report &report_;
  const Outcome outcome_;
  std::vector<std::string> thrown_;
};

}  // namespace

bool examine_start(const Attempt &attempt, const Found &found, const ElfFile &library,
                   Report &report) {
  return Diagnosis(attempt, found, library, report).run();
}

}  // namespace doctor
