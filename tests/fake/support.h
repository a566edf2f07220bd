// What the tests share: places of their own, and a library that is started on the fake runtime.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <initializer_list>
#include <string>

#include "fake_jvm.h"
#include "vantiro.h"

// As `fake::trace()` gives them.
inline std::string lines(std::initializer_list<std::string> parts) {
  std::string all;
  for (const std::string &part : parts) all += part + "\n";
  return all;
}

// Has the library find the runtime of that name.
inline void use_runtime(const std::string &name) {
  setenv("JAVA_HOME", (BUILD_DIRECTORY "/homes/" + name).c_str(), 1);
}

// A directory that is removed with what is in it.
class Tree {
 public:
  Tree() {
    std::string name = testing::TempDir() + "vantiro-XXXXXX";
    root_ = std::filesystem::canonical(mkdtemp(name.data()));
  }
  ~Tree() { std::filesystem::remove_all(root_); }
  Tree(const Tree &) = delete;
  Tree &operator=(const Tree &) = delete;

  std::string path(const std::string &name = "") const {
    return name.empty() ? root_ : root_ + "/" + name;
  }
  // What `name` with its slash leads to, in exactly so many characters.
  std::string path_of_length(std::size_t length, const std::string &name = "") const {
    return root_ + std::string(length - root_.size() - name.size(), '/') + name;
  }
  void file(const std::string &name, const std::string &text = "") const {
    make_place(name);
    std::ofstream(path(name)) << text;
  }
  void link(const std::string &name, const std::string &target) const {
    make_place(name);
    std::filesystem::create_symlink(target, path(name));
  }
  void remove(const std::string &name) const { std::filesystem::remove_all(path(name)); }

 private:
  void make_place(const std::string &name) const {
    std::filesystem::create_directories(std::filesystem::path(path(name)).parent_path());
  }
  std::string root_;
};

// No characters may be left unreleased by any test.
class OnFakeRuntime : public testing::Test {
 protected:
  OnFakeRuntime() { use_runtime("fake"); }
  void TearDown() override { EXPECT_EQ(fake::unreleased_characters(), 0); }
};

class Initialized : public OnFakeRuntime {
 protected:
  void SetUp() override {
    ASSERT_EQ(vantiro_init(), VANTIRO_OK);
    fake::trace();
  }
};
