// What the tests of the local grid share: a grid in a directory of its own, and strings without
// buffers.
#pragma once

#include <gtest/gtest.h>
#include <vantiro.h>

#include <csignal>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace fs = std::filesystem;

// The string that `call(buffer, size)` delivers, or its status in angle brackets.
template <typename Call>
std::string text_of(Call call) {
  char buffer[4096];
  unsigned int size = sizeof buffer;
  const int status = call(buffer, &size);
  if (status != VANTIRO_OK) return "<" + std::to_string(status) + ">";
  return size == 0 ? "<null>" : buffer;
}

inline std::string last_error() {
  return text_of([](char *b, unsigned int *s) { return vantiro_getLastErrorMessage(b, s); });
}

inline std::string read(const fs::path &file) {
  std::stringstream text;
  text << std::ifstream(file).rdbuf();
  return text.str();
}

inline bool contains(const std::string &text, const std::string &part) {
  return text.find(part) != std::string::npos;
}

class GridTest : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_NE(mkdtemp(scratch.data()), nullptr);
    // A launcher, say, that the whole suite is to run with.
    const char *common = getenv("VANTIRO_SETTINGS");
    write("settings", (common ? read(common) : "") + "grid.home=" + scratch + "/home\n");
    ASSERT_EQ(vantiro_initFile(path("settings").c_str()), 0) << last_error();
  }
  void TearDown() override {
    if (other) kill_other();
    vantiro_unload(1);
    fs::remove_all(scratch);
  }

  std::string path(const std::string &name) const { return scratch + "/" + name; }

  std::string write(const std::string &name, const std::string &text) const {
    fs::create_directories(fs::path(path(name)).parent_path());
    std::ofstream(path(name)) << text;
    return path(name);
  }

  // Starts another program on the same grid home, and comes back when it has got where it should.
  void start_other(const std::string &what) {
    other = popen(("exec '" OTHER_PROGRAM "' " + what + " '" + scratch + "'").c_str(), "r");
    ASSERT_EQ(fscanf(other, "%d", &process), 1);
  }

  void kill_other() {
    kill(process, SIGKILL);
    pclose(std::exchange(other, nullptr));
  }

  FILE *other = nullptr;
  pid_t process = 0;
  std::string scratch = testing::TempDir() + "grid-XXXXXX";
};
