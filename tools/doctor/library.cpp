#include "library.h"

#include "files.h"
#include "start.h"
#include "zip_file.h"

namespace doctor {
namespace {

constexpr int bits_here = 8 * sizeof(void *);
const char *const management_class = "fi/vantiro/user/ManagementImpl.class";

// Whether a file is missing beside a link to the library, and lies beside the link's target.
bool is_beside_target_only(const std::string &library, const std::string &name) {
  const std::string link = directory_of(library) + "/" + name;
  const std::string target = directory_of(real_path(library)) + "/" + name;
  return !exists(link) && exists(target);
}

void explain_link(const std::string &library, Report &report) {
  std::string names;
  for (const char *const name : {"VantiroDLL.conf", "vantiro.jar"}) {
    if (is_beside_target_only(library, name))
      names += (names.empty() ? "" : " and ") + std::string(name);
  }
  if (names.empty()) return;
  const std::string target = real_path(library);
  report.trouble(library + " is a link to " + target + ", and the library looks for " + names +
                     " beside the link",
                 "put links to the files beside that link too, or load " + target);
}

}  // namespace

std::string find_library(const std::string &name) {
  if (!name.empty()) {
    if (name.find('/') != name.npos) return name;
    return exists(name) ? "./" + name : locate(name);
  }
  const std::string own = directory_of(real_path("/proc/self/exe"));
  for (const char *const folder : {"", "/../" VANTIRO_LIBDIR "/vantiro", "/../lib"}) {
    const std::string path = real_path(own + folder) + "/" VANTIRO_SONAME;
    if (exists(path)) return path;
  }
  return locate(VANTIRO_SONAME);
}

ElfFile examine_library(const std::string &library, Report &report) {
  report.tell("library", library);
  report.tell("library directory", directory_of(library));
  ElfFile file;
  const std::string fault = why_unreadable(library);
  if (!fault.empty()) {
    report.trouble(library + " " + fault, "name the library that the program loads");
    return file;
  }
  file = read_elf(library);
  if (file.fault.empty() && !file.exports("vantiro_init")) file.fault = "has no vantiro_init";
  if (!file.fault.empty()) {
    report.trouble(library + " " + file.fault, "install the library again");
    return file;
  }
  report.tell("library kind", file.kind());
  if (file.bits != bits_here) {
    report.trouble(library + " is a " + file.kind() + ", and this doctor is a " +
                       std::to_string(bits_here) + "-bit program, which cannot load it",
                   "run the vantiro-doctor that was built together with that library");
  }
  explain_link(library, report);
  if (!library.starts_with('/')) {
    report.note(library +
                    " is reached by a relative path, and what lies beside it is looked for "
                    "from the current directory",
                "initialise before a chdir, or load it by its full path");
  }
  return file;
}

void examine_archives(const std::string &library, Report &report) {
  for (const char *const name : {"vantiro.jar", "commons-codec-1.3.jar", "xmlrpc-2.0.jar"}) {
    const std::string path = directory_of(library) + "/" + name;
    const bool is_main = std::string(name) == "vantiro.jar";
    std::string fault = why_unreadable(path);
    if (fault.empty()) {
      const ZipFile zip = read_zip(path, management_class);
      fault = zip.fault;
      if (fault.empty() && is_main && !zip.has_entry) {
        fault = "does not hold the class fi.vantiro.user.ManagementImpl";
      }
    }
    report.add_row("archives", {path, fault.empty() ? "is in order" : fault});
    if (fault.empty() || is_beside_target_only(library, name)) continue;
    if (is_main) {
      report.trouble(path + " " + fault,
                     "put the management library's archive there, or the local "
                     "grid's, which is built together with the library");
    } else if (exists(path)) {
      report.trouble(path + " " + fault, "put the archive that came with vantiro.jar there");
    } else {
      report.note(path + " " + fault,
                  "put it there if vantiro.jar needs it; the local grid's does "
                  "not");
    }
  }
}

}  // namespace doctor
