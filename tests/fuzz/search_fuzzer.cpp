// JAVA_HOME and PATH over trees of files, folders, pipes and links.
#include <fuzzer/FuzzedDataProvider.h>
#include <sys/stat.h>

#include <fstream>
#include <vector>

#include "fuzzing.h"
#include "host/discovery.h"
#include "host/locations.h"

namespace {

namespace fs = std::filesystem;

// Where something may lie, and where a link or a variable may lead.
const std::vector<std::string> &places() {
  static const std::vector<std::string> all = [] {
    std::vector<std::string> names = {".", "java", "a", "b", "a/b", "a/jre/bin", "b/jre/bin"};
    for (const std::string base : {"a", "a/b", "b"}) {
      for (const char *launcher : {"/java", "/bin/java", "/jre/bin/java"}) {
        names.push_back(base + launcher);
      }
      for (const std::string_view location : vantiro::locations_below_launcher) {
        names.push_back(base + "/" + std::string(location));
      }
    }
    return names;
  }();
  return all;
}

std::string pick_place(FuzzedDataProvider &input) {
  const auto number = input.ConsumeIntegralInRange<std::size_t>(0, places().size());
  return number == places().size() ? input.ConsumeRandomLengthString(20) : places()[number];
}

void make_something(FuzzedDataProvider &input) {
  const auto number = input.ConsumeIntegralInRange<std::size_t>(1, places().size() - 1);
  const std::string &place = places()[number];
  std::error_code ignored;
  if (fs::exists(fs::symlink_status(place, ignored))) return;
  fs::create_directories(fs::path(place).parent_path(), ignored);
  switch (input.ConsumeIntegralInRange(0, 4)) {
    case 0:
      fs::create_directory(place, ignored);
      break;
    case 1:
      mkfifo(place.c_str(), 0600);
      break;
    case 2:
      fs::create_symlink(pick_place(input), place, ignored);
      break;
    default:
      std::ofstream{place};
  }
}

int asked;
bool ask(const char *path) {
  ++asked;
  return vantiro::opens_for_reading(path);
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  static const Scratch scratch;
  for (const auto &entry : fs::directory_iterator(".")) fs::remove_all(entry.path());
  FuzzedDataProvider input(data, size);
  for (int count = input.ConsumeIntegralInRange(0, 10); count > 0; --count) make_something(input);
  unsetenv("JAVA_HOME");
  if (input.ConsumeBool()) setenv("JAVA_HOME", pick_place(input).c_str(), 1);
  std::string value;
  const int entries = input.ConsumeIntegralInRange(0, 4);
  for (int i = 0; i < entries; ++i) value += pick_place(input).c_str() + std::string(":");
  setenv("PATH", value.c_str(), 1);

  asked = 0;
  PathBuffer path;
  vantiro::find_runtime({path.text, ask}, ".");
  REQUIRE(path.checked() == "libjvm.so" || vantiro::opens_for_reading(path.text));
  REQUIRE(value.c_str() == std::string(getenv("PATH")));
  // For each entry, which a random string may split: a chain of links, and the places behind it.
  REQUIRE(asked <= 4 + static_cast<int>(value.size()) * (41 + 4));
  return 0;
}
