#include "causes.h"

#include <langinfo.h>
#include <pwd.h>
#include <sys/resource.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <clocale>
#include <cstdlib>
#include <filesystem>
#include <thread>

#include "child.h"
#include "files.h"
#include "words.h"

namespace doctor {
namespace {

// What hosting.md asks for.
constexpr rlim_t least_files = 256;
constexpr rlim_t least_memory = 1000000;  // in KB
constexpr int threads_of_java = 32;

rlim_t limit(__rlimit_resource resource, unsigned unit) {
  rlimit value{};
  getrlimit(resource, &value);
  return value.rlim_cur == RLIM_INFINITY ? RLIM_INFINITY : value.rlim_cur / unit;
}

std::string limits() {
  std::string text = "ulimit";
  for (const auto &[name, resource, unit] : {std::tuple(" -v ", RLIMIT_AS, 1024),
                                             {" -u ", RLIMIT_NPROC, 1},
                                             {" -n ", RLIMIT_NOFILE, 1}}) {
    const rlim_t value = limit(resource, static_cast<unsigned>(unit));
    text += name + (value == RLIM_INFINITY ? "unlimited" : std::to_string(value));
  }
  return text;
}

// Java can name a file only by characters of the locale's encoding.
bool is_encodable(const std::string &path) {
  return mbstowcs(nullptr, path.c_str(), 0) != static_cast<std::size_t>(-1);
}

bool is_noexec(const std::string &path) {
  struct statvfs status {};
  return statvfs(path.c_str(), &status) == 0 && (status.f_flag & ST_NOEXEC) != 0;
}

}  // namespace

void describe_surroundings(Report &report) {
  const char *const heading = "surroundings";
  const bool is_known = setlocale(LC_CTYPE, "") != nullptr;
  report.tell(heading, "encoding of the locale",
              nl_langinfo(CODESET) + std::string(is_known ? "" : ", for want of the locale"));
  report.tell(heading, "user", std::to_string(geteuid()));
  if (!getpwuid(geteuid())) {
    report.note("user " + std::to_string(geteuid()) +
                    " has no entry in passwd, and Java has no home directory for it",
                "give the grid its directory in the settings");
  }
  report.tell(heading, "limits", limits());
  for (const char *const name : {"JAVA_HOME", "PATH", "LD_LIBRARY_PATH", "JAVA_TOOL_OPTIONS",
                                 "_JAVA_OPTIONS", "JDK_JAVA_OPTIONS", "CLASSPATH"}) {
    if (const char *const value = std::getenv(name)) report.tell(heading, name, value);
  }
}

void explain_surroundings(const std::string &library, const std::string &runtime, Report &report) {
  std::error_code error;
  const std::string current = std::filesystem::current_path(error);
  if (error) report.trouble(words("the current directory has been removed"), "");
  for (const std::string &path : {library, runtime, current}) {
    if (!is_encodable(path)) {
      report.trouble(words("a path has characters that the encoding of the locale"),
                     path + ", in " + nl_langinfo(CODESET));
    }
  }
  for (const std::string &path : {library, runtime}) {
    if (is_noexec(path)) report.trouble(words("no library can be loaded"), path);
    if (path.find(':') != path.npos) report.trouble(words("there is a `:` in a path"), path);
  }
  if (limit(RLIMIT_NOFILE, 1) < least_files) {
    report.trouble(words("the process may not open"), limits());
  }
  if (limit(RLIMIT_AS, 1024) < least_memory) {
    report.trouble(words("the process may not have the memory"), limits());
  }
  // A thread that cannot be started is an exception, which ends the child.
  const Outcome threads = run_in_child([] {
    for (int i = 0; i < threads_of_java; ++i) std::thread(pause).detach();
  });
  if (!report.has_trouble() && !threads.end.empty()) {
    report.trouble(words("the process may not start the threads"), limits());
  }
}

}  // namespace doctor
