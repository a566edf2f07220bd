#include "runtimes.h"

#include <algorithm>

#include "files.h"

namespace doctor {
namespace {

// Where a runtime library looks for the rest of its runtime: above its own folder and "lib", where
// older runtimes have a folder for the kind of machine in between.
std::string home_of(const std::string &path) {
  std::string folder = directory_of(directory_of(real_path(path)));
  if (name_of(folder) != "lib") folder = directory_of(folder);
  return directory_of(folder);
}

bool has_classes(const std::string &home) {
  return exists(home + "/lib/modules") || exists(home + "/lib/rt.jar") ||
         exists(home + "/modules/java.base");
}

void add_runtimes_in(const std::string &folder, std::vector<std::string> &found) {
  for (const char *const kind : {"server", "client", "zero"}) {
    const std::string path = folder + "/" + kind + "/libjvm.so";
    if (exists(path)) found.push_back(path);
  }
}

}  // namespace

std::string why_no_runtime(const std::string &path, const ElfFile &library) {
  const std::string fault = why_unreadable(path);
  if (!fault.empty()) return fault;
  const ElfFile file = read_elf(path);
  if (!file.fault.empty()) return file.fault;
  if (library.bits != 0 && (file.bits != library.bits || file.machine != library.machine)) {
    return "is a " + file.kind() + ", and a program with this library needs a " +
           std::to_string(library.bits) + "-bit one";
  }
  if (file.is_program || !file.exports("JNI_CreateJavaVM")) {
    return "is not libjvm.so, but another " + std::string(file.is_program ? "program" : "library") +
           ": it has no JNI_CreateJavaVM";
  }
  if (!has_classes(home_of(path))) {
    return "is not in a Java runtime: there is no lib/modules and no lib/rt.jar in " +
           home_of(path);
  }
  return "";
}

Facts needs_of_runtime(const std::string &path) {
  const std::string home = home_of(path);
  Facts needs = {{"its home", home}};
  for (const char *const part : {"lib/modules", "lib/jvm.cfg", "lib/libjava.so", "lib/libzip.so",
                                 "lib/libmanagement.so", "conf/security/java.security"}) {
    const std::string fault = why_unreadable(home + "/" + part);
    needs.emplace_back(part, fault.empty() ? "there" : fault);
  }
  return needs;
}

std::vector<std::string> runtimes_at(const std::string &path) {
  std::vector<std::string> found;
  std::string base = real_path(path);
  for (int level = 0; level < 5 && base.size() > 1 && found.empty(); ++level) {
    for (const char *const library : {"/lib", "/jre/lib"}) {
      add_runtimes_in(base + library, found);
      for (const std::string &machine : names_in(base + library)) {
        add_runtimes_in(base + library + "/" + machine, found);
      }
    }
    base = directory_of(base);
  }
  return found;
}

std::string first_usable(const std::vector<std::string> &found, const ElfFile &library) {
  const auto usable = std::find_if(found.begin(), found.end(), [&](const std::string &path) {
    return why_no_runtime(path, library).empty();
  });
  return usable == found.end() ? "" : *usable;
}

std::string cure_by(const std::vector<std::string> &found, const ElfFile &library,
                    const std::string &conf) {
  const std::string usable = first_usable(found, library);
  if (!usable.empty()) return "write the line JVMPATH=" + usable + " into " + conf;
  return "install a " + std::to_string(library.bits) +
         "-bit Java runtime and write the line JVMPATH=/the/path/of/its/libjvm.so into " + conf;
}

}  // namespace doctor
