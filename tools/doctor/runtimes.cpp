#include "runtimes.h"

#include <dlfcn.h>

#include <algorithm>
#include <cstdint>
#include <fstream>

#include "child.h"
#include "files.h"
#include "start.h"
#include "words.h"

namespace doctor {
namespace {

void add_runtimes_in(const std::string &folder, std::vector<std::string> &found) {
  for (const char *const kind : {"server", "client", "zero"}) {
    const std::string path = folder + "/" + kind + "/libjvm.so";
    if (exists(path)) found.push_back(path);
  }
}

enum Attribute { ends = 0, starts_at = 5, packed_length = 6, whole_length = 7 };

// Java takes what is missing of lib/modules for zeros. The file has a head of seven numbers, two
// tables, and then where each resource is, as pairs of an attribute's kind and value that end with
// a zero.
bool is_cut_short(const std::string &modules) {
  std::ifstream file(modules, std::ios::binary);
  const auto size = static_cast<std::uint64_t>(file.seekg(0, std::ios::end).tellg());
  std::uint32_t head[7] = {};
  file.seekg(0).read(reinterpret_cast<char *>(head), sizeof head);
  const auto [magic, version, flags, resources, table, locations, strings] = head;
  const std::uint64_t start = sizeof head + 8ULL * table;
  const std::uint64_t contents = start + locations + strings;
  if (!file || magic != 0xcafedada || contents > size) return true;
  std::string attributes(locations, '\0');
  file.seekg(static_cast<std::streamoff>(start))
      .read(attributes.data(), static_cast<std::streamsize>(locations));
  std::uint64_t end = 0;
  std::uint64_t offset = 0;
  std::uint64_t length = 0;
  for (std::size_t at = 0; at < attributes.size(); ++at) {
    const auto byte = static_cast<unsigned char>(attributes[at]);
    const int kind = byte >> 3;
    std::uint64_t value = 0;
    for (int left = byte & 7; kind != ends && left >= 0 && at + 1 < attributes.size(); --left) {
      value = value << 8 | static_cast<unsigned char>(attributes[++at]);
    }
    if (kind == starts_at) offset = value;
    if (kind == packed_length || (kind == whole_length && length == 0)) length = value;
    if (kind != ends) continue;
    end = std::max(end, offset + length);
    offset = length = 0;
  }
  return contents + end > size;
}

}  // namespace

std::string why_no_runtime(const std::string &path) {
  const std::string fault = why_unreadable(path);
  if (!fault.empty()) return fault;
  const int bits = bits_of(path);
  if (bits != 0 && bits != bits_here) {
    return "is a " + std::to_string(bits) +
           "-bit library, and a program with this library needs a " + std::to_string(bits_here) +
           "-bit one";
  }
  const Outcome outcome = load({path}, "JNI_CreateJavaVM");
  if (!outcome.fact("no function").empty()) {
    return "is not libjvm.so, but another library: it has no JNI_CreateJavaVM";
  }
  const std::string error = outcome.fact("error");
  if (!error.empty()) return "does not load: " + error;
  return outcome.end.empty() ? "" : "cannot be loaded: a process that does so " + outcome.end;
}

void explain_runtime(const std::string &runtime, Report &report) {
  // Older runtimes have a folder for the kind of machine below "lib".
  std::string lib = directory_of(directory_of(real_path(runtime)));
  if (name_of(lib) != "lib") lib = directory_of(lib);
  const std::string modules = lib + "/modules";
  const std::string fault = why_unreadable(modules);
  if (!exists(modules)) {
    if (!exists(lib + "/rt.jar") && !exists(lib + "/../modules/java.base")) {
      report.trouble(words("`libjvm.so` was copied"), runtime + " has no lib/modules above it");
    }
    return;
  }
  if (!fault.empty() || is_cut_short(modules)) {
    report.trouble(words("a file of the Java runtime is cut short"),
                   modules + (fault.empty() ? "" : ", which " + fault));
    return;
  }
  std::vector<std::string> parts = {runtime};
  for (const char *const name : {"jimage", "java", "zip", "net", "nio", "verify", "management"}) {
    parts.push_back(lib + "/lib" + name + ".so");
  }
  const std::string error = load(parts, "JNI_CreateJavaVM").fact("error");
  if (error.find("libz.so.1") != error.npos) {
    report.trouble(words("the Java runtime cannot open archives"), error);
  } else if (!error.empty()) {
    report.trouble(words("the Java runtime is not complete"), error);
  }
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

std::string first_usable(const std::vector<std::string> &found) {
  const auto usable = std::find_if(found.begin(), found.end(), [](const std::string &path) {
    return why_no_runtime(path).empty();
  });
  return usable == found.end() ? "" : *usable;
}

std::string cure_by(const std::vector<std::string> &found, const std::string &conf) {
  const std::string usable = first_usable(found);
  if (!usable.empty()) return "write the line JVMPATH=" + usable + " into " + conf;
  return "install a " + std::to_string(bits_here) +
         "-bit Java runtime and write the line JVMPATH=/the/path/of/its/libjvm.so into " + conf;
}

}  // namespace doctor
