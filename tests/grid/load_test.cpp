// Many calls from many threads, and many threads. VANTIRO_LOAD=10 makes ten times as many.
#include <jni.h>
#include <unistd.h>

#include <atomic>
#include <cstdlib>
#include <functional>
#include <iostream>
#include <thread>
#include <vector>

#include "grid_test.h"

namespace {

int times_load(int count) {
  const char *const factor = std::getenv("VANTIRO_LOAD");
  return count * (factor ? std::atoi(factor) : 1);
}

double resident_mb() {
  std::ifstream file("/proc/self/statm");
  double total = 0, resident = 0;
  file >> total >> resident;
  return resident * static_cast<double>(sysconf(_SC_PAGESIZE)) / (1 << 20);
}

class Load : public GridTest {
 protected:
  void SetUp() override {
    GridTest::SetUp();
    session = vantiro_open();
  }
  int session = 0;
};

}  // namespace

TEST_F(Load, GivesEachThreadItsOwnResults) {
  constexpr int threads = 8, values = 10, calls_of_a_frame = 500;
  const int frames = times_load(50);
  std::atomic<int> wrong = 0;
  const auto work = [&](int thread) {
    std::vector<std::string> parameters;
    std::vector<const char *> list;
    const auto value = [thread](int i) { return std::to_string(1000 * thread + i); };
    for (int i = 0; i < values; ++i) parameters.push_back(std::to_string(i) + "=" + value(i));
    for (const std::string &parameter : parameters) list.push_back(parameter.c_str());
    const int project = vantiro_createProject2(session, 0, "p", values, list.data());
    void *thread_env = nullptr;
    vantiro_getJavaVM()->AttachCurrentThread(&thread_env, nullptr);
    auto *const jni = static_cast<JNIEnv *>(thread_env);
    for (int frame = 0; frame < frames; ++frame) {
      jni->PushLocalFrame(2 * calls_of_a_frame);
      for (int call = 0; call < calls_of_a_frame; ++call) {
        const int i = call % values;
        wrong += text_of([&](char *b, unsigned int *s) {
                   return vantiro_getProjectParamValue(project, std::to_string(i).c_str(), b, s);
                 }) != value(i);
      }
      jni->PopLocalFrame(nullptr);
    }
    vantiro_getJavaVM()->DetachCurrentThread();
  };
  std::vector<std::thread> running;
  for (int i = 0; i < threads; ++i) running.emplace_back(work, i);
  for (std::thread &thread : running) thread.join();
  EXPECT_EQ(wrong, 0);
  std::cout << threads * frames * calls_of_a_frame << " calls\n";
}

TEST_F(Load, LetsShortThreadsGoWhenTheyDetach) {
  const int threads = times_load(1000);
  const int project = vantiro_createEmptyProject(session, 0, "p");
  const auto grown_by = [&](const std::function<void()> &end) {
    const double before = resident_mb();
    for (int i = 0; i < threads; ++i) {
      std::thread([&] {
        EXPECT_GT(vantiro_getProjectId(project), 0);
        end();
      }).join();
    }
    return resident_mb() - before;
  };
  const double detached = grown_by([] { vantiro_getJavaVM()->DetachCurrentThread(); });
  std::cout << threads << " threads that detach: " << detached << " MB\n";
  if (std::getenv("VANTIRO_LOAD")) {
    std::cout << "as many that do not: " << grown_by([] {}) << " MB" << std::endl;
    TearDown();
    std::_Exit(HasFailure());  // since the machine would wait for the threads that are gone
  }
#ifndef __SANITIZE_ADDRESS__  // which keeps what is freed
  EXPECT_LT(detached, 20);
#endif
}
