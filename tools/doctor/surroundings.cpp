#include "surroundings.h"

#include <langinfo.h>
#include <pwd.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <clocale>
#include <cstdlib>
#include <filesystem>

#include "files.h"

namespace doctor {
namespace {

void tell(Report &report, const std::string &name, const std::string &fact) {
  report.tell("surroundings", name, fact);
}

// Java can name a file only by characters of the locale's encoding.
bool is_encodable(const std::string &path) {
  return mbstowcs(nullptr, path.c_str(), 0) != static_cast<std::size_t>(-1);
}

void examine_locale(const std::vector<std::string> &paths, Report &report) {
  const bool known = setlocale(LC_ALL, "") != nullptr;
  const std::string encoding = nl_langinfo(CODESET);
  tell(report, "encoding of the locale",
       encoding + (known ? "" : ", since the locale that the environment names is not installed"));
  for (const std::string &path : paths) {
    if (is_encodable(path)) continue;
    report.trouble(path + " has characters that the encoding of the locale, " + encoding +
                       ", does not have, so that Java cannot open it",
                   "set LC_ALL=C.UTF-8 or another locale with these characters, or use a path of "
                   "plain letters");
  }
}

void examine_user(Report &report) {
  const passwd *const entry = getpwuid(geteuid());
  const std::string user = std::to_string(geteuid());
  if (!entry) {
    tell(report, "user", user + ", without an entry in passwd");
    report.note("user " + user + " has no entry in passwd, and Java has no home directory for it",
                "give the grid its directory in the settings, or add "
                "-Duser.home=DIRECTORY to JAVA_TOOL_OPTIONS");
    return;
  }
  const std::string home = entry->pw_dir;
  tell(report, "user", user + " (" + entry->pw_name + "), home " + home);
  if (access(home.c_str(), W_OK | X_OK) != 0) {
    report.note("the home directory " + home + " " +
                    (exists(home) ? "cannot be written to by user " + user : "does not exist"),
                "give the grid its directory in the settings, or create the home directory");
  }
}

void examine_mounts(const std::vector<std::string> &paths, Report &report) {
  for (const std::string &path : paths) {
    struct statvfs status {};
    if (statvfs(path.c_str(), &status) != 0 || (status.f_flag & ST_NOEXEC) == 0) continue;
    report.trouble(path +
                       " lies on a file system that is mounted noexec, and no library can be "
                       "loaded from there",
                   "put it on another file system, or mount that one without noexec");
  }
}

void examine_colons(const std::vector<std::string> &paths, Report &report) {
  for (const std::string &path : paths) {
    if (path.find(':') == path.npos) continue;
    report.trouble(path + " has a ':' in it, where Java splits a path in two",
                   "use directories without ':'");
  }
}

}  // namespace

std::string limit(__rlimit_resource resource, unsigned unit) {
  rlimit value{};
  if (getrlimit(resource, &value) != 0) return "unknown";
  return value.rlim_cur == RLIM_INFINITY ? "unlimited" : std::to_string(value.rlim_cur / unit);
}

void examine_surroundings(const std::vector<std::string> &paths, Report &report) {
  std::error_code error;
  const std::string current = std::filesystem::current_path(error);
  tell(report, "current directory", error ? "gone: " + error.message() : current);
  if (error) {
    report.trouble("the current directory has been removed",
                   "start the program in a directory that exists");
  }
  examine_user(report);
  if (access("/tmp", W_OK | X_OK) != 0) {
    report.note("the directory /tmp does not exist or cannot be written to",
                "create it, with mode 1777");
  }
  std::vector<std::string> with_current = paths;
  with_current.push_back(current);
  examine_locale(with_current, report);
  tell(report, "limits",
       "ulimit -v " + limit(RLIMIT_AS, 1024) + ", -u " + limit(RLIMIT_NPROC, 1) + ", -n " +
           limit(RLIMIT_NOFILE, 1) + ", -s " + limit(RLIMIT_STACK, 1024));
  for (const char *const name : {"JAVA_HOME", "PATH", "LD_LIBRARY_PATH", "JAVA_TOOL_OPTIONS",
                                 "_JAVA_OPTIONS", "JDK_JAVA_OPTIONS", "CLASSPATH"}) {
    if (const char *const value = std::getenv(name)) tell(report, name, value);
  }
  if (std::getenv("JDK_JAVA_OPTIONS")) {
    report.note("JDK_JAVA_OPTIONS is read by the java command only",
                "put options for programs with this library into JAVA_TOOL_OPTIONS");
  }
  examine_mounts(paths, report);
  examine_colons(paths, report);
}

}  // namespace doctor
