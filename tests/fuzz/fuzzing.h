// What the targets share: a folder of their own, and what must hold.
#pragma once

#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

#define REQUIRE(what) \
  if (!(what)) std::fprintf(stderr, "not so: " #what "\n"), std::abort()

// Becomes the current directory, and is removed when the target ends.
class Scratch {
 public:
  Scratch() {
    REQUIRE(mkdtemp(name_.data()));
    std::filesystem::current_path(name_);
  }
  ~Scratch() { std::filesystem::remove_all(name_); }
  Scratch(const Scratch &) = delete;
  Scratch &operator=(const Scratch &) = delete;

 private:
  std::string name_ = std::filesystem::temp_directory_path() / "vantiro-fuzz-XXXXXX";
};

// A place for a path, with a mark behind it.
struct PathBuffer {
  static constexpr std::size_t capacity = 4096;
  char text[capacity + 1] = "";
  PathBuffer() { text[capacity] = '#'; }
  std::string_view checked() const {
    REQUIRE(text[capacity] == '#');
    const std::string_view path = text;
    REQUIRE(path.size() < capacity);
    return path;
  }
};
