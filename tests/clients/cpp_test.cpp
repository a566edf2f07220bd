#include <gtest/gtest.h>

#include <filesystem>
#include <thread>
#include <vantiro.hpp>

namespace {

using vantiro::call, vantiro::list, vantiro::text;

template <typename Action>
std::string failure_of(Action action) {
  try {
    action();
  } catch (const vantiro::error &error) {
    return error.what();
  }
  return "";
}

struct Cpp : testing::Test {
  Cpp() {
    const char *home = mkdtemp(home_.data());
    call(vantiro_initWithoutFile, home, login_.c_str(), nullptr, nullptr, 0, "OFF", nullptr, 0, 0,
         nullptr, nullptr);
    run_ = call(vantiro_peach_handle);
  }
  ~Cpp() override { std::filesystem::remove_all(home_); }

  std::string home_ = testing::TempDir() + "cpp-XXXXXX";
  const std::string login_ = std::string(100000, 'x');
  int run_ = 0;
};

TEST(CppBeforeTheStart, EveryCallThrows) {
  const vantiro::attachment attachment;
  const vantiro::frame frame;
  const std::string wanted = "Java is not initialized (status -11)";
  EXPECT_EQ(failure_of([] { call(vantiro_setLogLevel, "INFO"); }), wanted);
  EXPECT_EQ(failure_of([] { text(vantiro_getUserLogin); }), wanted);
  EXPECT_EQ(failure_of([] { list(vantiro_getResultFiles, 1); }), wanted);
  EXPECT_NE(failure_of([] { vantiro::check(-7); }).find("(status -7)"), std::string::npos);
}

TEST_F(Cpp, TextsAndLists) {
  EXPECT_EQ(text(vantiro_getUserLogin), login_);
  EXPECT_EQ(text(vantiro_getJavaSystemProperty, "no.such.property"), "");
  const int project = call(vantiro_createProject, call(vantiro_open), 0, "", 2, "a=1", "b=2");
  EXPECT_EQ(list(vantiro_getProjectParamName, project), (std::vector<std::string>{"a", "b"}));
  EXPECT_TRUE(list(vantiro_getResultFiles, project).empty());
}

// What the calls make is several times the heap.
TEST_F(Cpp, ALoopKeepsNothing) {
  for (int i = 0; i < 2500; ++i) {
    call(vantiro_peach_setName, run_, login_.c_str());
    ASSERT_EQ(text(vantiro_getUserLogin).size(), login_.size());
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

TEST_F(Cpp, AReceiverIsKeptAndMayThrow) {
  std::string received;
  call(vantiro_peach_setExecutable, run_, "echo one; echo two");
  vantiro::set_receiver(run_, [&received, end = login_.substr(0, 1)](const std::string &result) {
    received += result + end;
    throw std::runtime_error("too much");
  });
  call(vantiro_peach_execute, run_);
  EXPECT_EQ(received, "1:onex1:twox");
}

}  // namespace
