// The local grid when memory or threads run out: every job ends, and everybody learns of it.
#include <jni.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cstdlib>
#include <functional>
#include <thread>

#include "grid_test.h"

namespace {

// Strings that a call made stay until the thread that called is detached.
void detached(const std::function<void()> &work) {
  std::thread([&] {
    work();
    vantiro_getJavaVM()->DetachCurrentThread();
  }).join();
}

class Shortage : public GridTest {
 protected:
  void start_with(const char *options) {
    setenv("_JAVA_OPTIONS", options, 1);
    // In a full heap a list is built with an exception pending, which the checks would report.
    unsetenv("JAVA_TOOL_OPTIONS");
    GridTest::SetUp();
    session = vantiro_open();
  }
  void SetUp() override {}

  int project() const { return vantiro_createEmptyProject(session, 0, "p"); }

  static int start(int project) {
    vantiro_markAllJobsCreated(project);
    return vantiro_startProject(project);
  }

  int session = 0;
};

}  // namespace

TEST_F(Shortage, OfMemoryInAJobEndsThatJob) {
  start_with("-Xmx20m");
  const int some = project();
  detached([&] {
    const std::string large(5 << 19, 'x');
    const int job = vantiro_createJob(some, 4, "true", large.c_str(), large.c_str(), large.c_str());
    ASSERT_EQ(job, 1) << last_error();
    vantiro_createProjectJobs(some, 1, "true");
  });
  ASSERT_EQ(start(some), 0) << last_error();
  EXPECT_EQ(vantiro_waitCompletion(some), -5);
  EXPECT_TRUE(contains(last_error(), "out of memory")) << last_error();
  EXPECT_EQ(vantiro_isJobCompleted(some, 2), 1);
  EXPECT_EQ(vantiro_removeProject(some), 0);
}

TEST_F(Shortage, OfMemoryEndsWhenWhatFilledItIsRemoved) {
  start_with("-Xmx16m");
  const int waited = project(), held = project();
  const auto until = [&](const char *file) {
    return "while ! [ -e " + path(file) + " ]; do sleep 0.02; done; ";
  };
  vantiro_createProjectJobs(waited, 1, until("go").c_str());
  vantiro_createProjectJobs(held, 1, (until("full") + "touch " + path("ending")).c_str());
  ASSERT_EQ(start(waited), 0) << last_error();
  ASSERT_EQ(start(held), 0) << last_error();
  int completion = 1;
  std::thread waiter([&] { completion = vantiro_waitCompletion(waited); });
  const int large = project();
  detached([&] {
    for (const std::size_t size : {2000, 1}) {
      const std::string text(size, 'x');
      while (vantiro_createJob(large, 2, "true", text.c_str()) > 0) continue;
    }
    start(large);
    // This one ends when there is no memory to take note of it.
    write("full", "");
    while (!fs::exists(path("ending"))) usleep(1000);
    usleep(500'000);
  });
  detached([&] { EXPECT_EQ(vantiro_removeProject(large), 0); });
  vantiro_waitCompletion(held);  // its results may be lost for want of memory, its end may not
  EXPECT_EQ(vantiro_isJobCompleted(held, 1), 1);
  write("go", "");
  waiter.join();
  EXPECT_EQ(completion, 0);
  detached([&] {
    const int next = project();
    vantiro_createProjectJobs(next, 1, "true");
    EXPECT_EQ(start(next), 0) << last_error();
    EXPECT_EQ(vantiro_waitCompletion(next), 0) << last_error();
  });
}

TEST_F(Shortage, OfThreadsFailsAStartThatCanBeRepeated) {
#ifdef __SANITIZE_ADDRESS__
  GTEST_SKIP() << "AddressSanitizer does not live with so little memory";
#endif
  start_with("-Xmx64m");
  const int some = project();
  vantiro_createProjectJobs(some, 1, "true");
  vantiro_markAllJobsCreated(some);
  rlimit before = {}, none = {};
  getrlimit(RLIMIT_AS, &before);
  std::ifstream("/proc/self/statm") >> none.rlim_cur;
  none = {none.rlim_cur * static_cast<rlim_t>(getpagesize()), before.rlim_max};
  ASSERT_EQ(setrlimit(RLIMIT_AS, &none), 0);
  const int failed = vantiro_startProject(some);
  setrlimit(RLIMIT_AS, &before);
  ASSERT_LT(failed, 0);
  EXPECT_EQ(vantiro_getProjectStatus(some), 0);
  EXPECT_EQ(vantiro_startProject(some), 0) << last_error();
  EXPECT_EQ(vantiro_waitCompletion(some), 0) << last_error();
}
