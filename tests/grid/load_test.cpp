// Many calls from many threads, and many threads. VANTIRO_LOAD=10 makes ten times as many.
#include <jni.h>
#include <unistd.h>

#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <functional>
#include <iostream>
#include <iterator>
#include <thread>
#include <vector>

#include "grid_test.h"

namespace {

int times_load(int count) {
  const char *const factor = std::getenv("VANTIRO_LOAD");
  return count * (factor ? std::atoi(factor) : 1);
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

// What Java has of threads, those included that ended without being detached.
static int java_threads() {
  void *own = nullptr;
  vantiro_getJavaVM()->AttachCurrentThread(&own, nullptr);
  auto *const jni = static_cast<JNIEnv *>(own);
  const jclass type = jni->FindClass("java/lang/Thread");
  const jmethodID count = jni->GetStaticMethodID(type, "activeCount", "()I");
  const int threads = jni->CallStaticIntMethod(type, count);
  return jni->ExceptionCheck() ? -1 : threads;
}

TEST_F(Load, LetsShortThreadsGoWhenTheyDetach) {
  const int project = vantiro_createEmptyProject(session, 0, "p");
  const auto grown_by = [&](int threads, const std::function<void()> &end) {
    const int before = java_threads();
    for (int i = 0; i < threads; ++i) {
      std::thread([&] {
        EXPECT_GT(vantiro_getProjectId(project), 0);
        end();
      }).join();
    }
    return java_threads() - before;
  };
  EXPECT_LT(grown_by(times_load(300), [] { vantiro_getJavaVM()->DetachCurrentThread(); }), 10);
}

namespace {

std::ptrdiff_t entries(const char *directory) {
  return std::distance(fs::directory_iterator(directory), fs::directory_iterator());
}

int children() {
  std::ifstream list("/proc/self/task/" + std::to_string(getpid()) + "/children");
  int count = 0;
  for (int child = 0; list >> child;) ++count;
  return count;
}

}  // namespace

TEST_F(Load, GivesBackWhatAStartTook) {
  const auto round = [&](int number) {
    const int next = vantiro_createEmptyProject(vantiro_open(), 0, "p");
    vantiro_createProjectJobs(next, 1, "true");
    vantiro_markAllJobsCreated(next);
    ASSERT_EQ(vantiro_startProject(next), 0) << last_error();
    ASSERT_EQ(vantiro_waitCompletion(next), 0) << last_error();
    // By either way, before or after the next start, and in homes of their own.
    write("settings", "grid.home=" + path("home" + std::to_string(number % 3)) + "\n");
    const bool before = number % 2 != 0;
    ASSERT_EQ(before ? vantiro_unload2(1, 1) : 0, 0) << last_error();
    ASSERT_EQ(vantiro_initFile(path("settings").c_str()), 0) << last_error();
    ASSERT_EQ(before ? 0 : vantiro_removeProject(next), 0) << last_error();
  };
  // A keeper that is not needed any more ends by itself.
  const auto settle = [] {
    for (int i = 0; i < 100 && children() > 0; ++i) vantiro_actionWait(50);
    return children();
  };
  for (int i = 0; i < 6; ++i) round(i);
  ASSERT_EQ(settle(), 0);
  const auto descriptors = entries("/proc/self/fd"), threads = entries("/proc/self/task");
  for (int i = 0; i < times_load(30); ++i) round(i);
  EXPECT_EQ(settle(), 0);
  EXPECT_LE(entries("/proc/self/fd"), descriptors);
  // Java keeps the threads that waited for its processes for a minute.
  EXPECT_LE(entries("/proc/self/task"), threads + 4);
}
