#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <thread>
#include <vantiro.hpp>

// The same header in translation units of other standards, and without RTTI.
std::size_t jobs_of_cxx20(const vantiro::library &grid, const std::string &line);
std::size_t jobs_of_cxx23(const vantiro::library &grid, const std::string &line);

namespace {

using namespace std::chrono_literals;
using vantiro::call, vantiro::list, vantiro::text;

template <typename Action>
std::string failure_of(Action action) {
  try {
    action();
  } catch (const std::exception &error) {
    return error.what();
  }
  return "";
}

// Removes what the grid leaves.
struct Scratch {
  std::string path = testing::TempDir() + "cpp-XXXXXX";
  Scratch() { mkdtemp(path.data()); }
  ~Scratch() { std::filesystem::remove_all(path); }
};

struct Cpp : testing::Test {
  static vantiro::settings settings_for(const std::string &home, const std::string &login) {
    vantiro::settings settings;
    settings.home = home;
    settings.login = login;
    settings.log_level = "OFF";
    return settings;
  }
  Scratch scratch_;
  const std::string login_ = std::string(100000, 'x');
  vantiro::library grid_{settings_for(scratch_.path, login_)};
};

TEST(CppBeforeTheStart, EveryCallThrowsAndAStartPointsToTheDoctor) {
  const vantiro::attachment attachment;
  const vantiro::frame frame;
  const std::string wanted = "Java is not initialized (status -11)";
  EXPECT_EQ(failure_of([] { call(vantiro_setLogLevel, "INFO"); }), wanted);
  EXPECT_EQ(failure_of([] { text(vantiro_getUserLogin); }), wanted);
  EXPECT_EQ(failure_of([] { list(vantiro_getResultFiles, 1); }), wanted);
  EXPECT_NE(failure_of([] { vantiro::check(-7); }).find("(status -7)"), std::string::npos);
  setenv("_JAVA_OPTIONS", "-Djava.class.path=/nonexistent", 1);
  EXPECT_EQ(failure_of([] { vantiro::library(); }),
            "Java method could not be found (status -12): vantiro-doctor tells the cause and the "
            "cure");
}

TEST_F(Cpp, TextsAndLists) {
  EXPECT_EQ(grid_.user_login(), login_);
  EXPECT_EQ(grid_.java_property("no.such.property"), "");
  const vantiro::project project(grid_, "", 0, {"a=1", "b=2"});
  EXPECT_EQ(list(vantiro_getProjectParamName, project.handle()),
            (std::vector<std::string>{"a", "b"}));
  EXPECT_TRUE(list(vantiro_getResultFiles, project.handle()).empty());
}

// What the calls make is several times the heap.
TEST_F(Cpp, ALoopKeepsNothing) {
  vantiro::run run(grid_);
  for (int i = 0; i < 2500; ++i) {
    run.name(login_);
    ASSERT_EQ(grid_.user_login().size(), login_.size());
  }
}

TEST_F(Cpp, AThreadLeavesWhenItsAttachmentEnds) {
  std::thread([] {
    {
      const vantiro::attachment attachment;
      call(vantiro_open);
      { const vantiro::attachment inner; }
      EXPECT_TRUE(vantiro::detail::is_attached());
    }
    EXPECT_FALSE(vantiro::detail::is_attached());
  }).join();
}

TEST_F(Cpp, AProjectGivesItsArchivesAndEndsItsJobs) {
  const std::filesystem::path results = scratch_.path + "/results";
  vantiro::project first(grid_, "first", 1);
  EXPECT_EQ(first.add_job({"echo", "a  b"}), 1);
  first.add_lines({"echo c | tee d", "echo $VANTIRO_JOB"});
  first.start();
  vantiro::project project = std::move(first);
  EXPECT_TRUE(project.wait_for(60s));
  project.wait();
  EXPECT_FALSE(project.failed());
  const auto archives = project.download(results);
  ASSERT_EQ(archives.size(), 3U);
  for (const std::filesystem::path &archive : archives) EXPECT_TRUE(exists(archive)) << archive;
  EXPECT_GE(project.unzip(results), 3);

  int handle = 0;
  {
    vantiro::project endless(grid_, "endless");
    handle = endless.handle();
    endless.add_job({"sleep", "1000"});
    endless.start();
    EXPECT_FALSE(endless.wait_for(20ms));
    project = std::move(endless);
  }
  project = vantiro::project(grid_, "another");
  EXPECT_EQ(call(vantiro_isCompleted, handle), 1);
  EXPECT_EQ(vantiro_getProjectStatus(handle), 4);
  project.remove();
}

TEST_F(Cpp, AFailureSaysWhatTheJavaSideSaid) {
  vantiro::run run(grid_);
  run.executable("echo no >&2; exit 3");
  try {
    run.execute();
    FAIL() << "nothing was thrown";
  } catch (const vantiro::error &error) {
    EXPECT_EQ(error.status(), -5);
    EXPECT_STREQ(error.text(), "at least one job failed");
    EXPECT_NE(std::string(error.message()).find("status 3"), std::string::npos) << error.what();
    EXPECT_NE(std::string(error.what()).find(error.message()), std::string::npos) << error.what();
  }
}

TEST_F(Cpp, ARunKeepsItsReceiverAndHandsOutItsFiles) {
  vantiro::run first(grid_);
  std::string received;
  first.executable("echo one | tee file; echo two").output("file");
  first.receive([&received, end = login_.substr(0, 1)](std::string_view line) {
    received.append(line) += end;
  });
  vantiro::run run = std::move(first);
  run.execute();
  EXPECT_EQ(received, "1:onex1:twox");
  std::vector<std::string> names;
  for (const std::filesystem::path &file : run.files()) names.push_back(file.filename().string());
  EXPECT_EQ(names, std::vector<std::string>{"file"});
  EXPECT_EQ(run.files().begin(), run.files().end());
  run.done();
  EXPECT_EQ(jobs_of_cxx20(grid_, "echo 1") + jobs_of_cxx23(grid_, "echo 1"), 2U);
}

// Several runs at once, and one within a receiver of another.
TEST_F(Cpp, EachRunHasItsReceiverOnItsThread) {
  const auto lines_of = [&](const std::string &word, auto within) {
    const vantiro::attachment attachment;
    const auto thread = std::this_thread::get_id();
    std::string received;
    vantiro::run run(grid_);
    run.executable("for i in 1 2 3; do echo " + word + "; sleep 0.1; done");
    run.receive([&](std::string_view line) {
      if (std::this_thread::get_id() == thread) received.append(line) += ' ';
      within();
    });
    run.execute();
    return received;
  };
  std::string first, second, inner;
  std::thread one([&] { first = lines_of("a", [] {}); });
  std::thread two([&] {
    second = lines_of("b", [&] {
      if (inner.empty()) inner = lines_of("c", [] {});
    });
  });
  one.join();
  two.join();
  EXPECT_EQ(first, "1:a 1:a 1:a ");
  EXPECT_EQ(second, "1:b 1:b 1:b ");
  EXPECT_EQ(inner, "1:c 1:c 1:c ");
}

TEST_F(Cpp, WhatAReceiverThrowsIsThrownAtTheEndOfTheRun) {
  vantiro::run run(grid_);
  int received = 0;
  run.executable("echo one; echo two; echo three >file").output("file");
  run.receive([&](std::string_view) {
    ++received;
    throw std::runtime_error("too much");
  });
  EXPECT_EQ(failure_of([&] { run.execute(); }), "too much");
  EXPECT_EQ(received, 1);
  EXPECT_NE(run.files().begin(), run.files().end()) << "the jobs did not go on";

  vantiro::run stopped(grid_);
  stopped.executable("echo one; sleep 1000").receive([&](std::string_view) { stopped.stop(); });
  EXPECT_THROW(stopped.execute(), vantiro::error);
}

}  // namespace
