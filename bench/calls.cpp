// What a call costs beside the same call written by hand, one call of each kind, in one process and
// in turn; by hand against by hand is the noise. The runtime is the one that VantiroDLL.conf names.
#include <jni.h>
#include <vantiro.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <thread>
#include <vantiro.hpp>

#include "by_hand.h"
#include "pairs.h"

namespace {

const char *set = "";
double seconds = 1;
std::string wanted;

void require(const char *what, int status) {
  if (status >= 0) return;
  std::fprintf(stderr, "calls: %s failed with status %d\n", what, status);
  std::exit(EXIT_FAILURE);
}

// What a call leaves behind in the thread is released after each batch, and not timed.
template <typename Call>
double time_batch(int batch, Call call) {
  JNIEnv *const jni = vantiro_getJNIEnv();
  jni->PushLocalFrame(16);
  int failures = 0;
  const double begin = bench::now();
  for (int i = 0; i < batch; ++i) failures |= call() < 0;
  const double end = bench::now();
  jni->PopLocalFrame(nullptr);
  require("a call", -failures);
  return end - begin;
}

// `weight` is how much more than a plain call it does, about.
template <typename Library, typename ByHand>
void compare(const std::string &name, Library library, ByHand by_hand, int weight = 1) {
  if (name.find(wanted) == name.npos) return;
  const int batch = std::max(1, 1000 / weight);
  const auto ours = [=] { return time_batch(batch, library); };
  const auto theirs = [=] { return time_batch(batch, by_hand); };
  bench::in_turn(seconds, ours, theirs).print(set, name.c_str(), 1e9 / batch);
  bench::in_turn(seconds, theirs, theirs).print(set, (name + " (noise)").c_str(), 1e9 / batch);
}

// Seconds for one call, by that many threads at once.
template <typename Call>
double time_threads(int count, Call call) {
  constexpr int calls = 4000;
  std::atomic<int> ready{0};
  std::vector<std::thread> threads;
  std::vector<double> begins(static_cast<std::size_t>(count)), ends(begins);
  for (std::size_t i = 0; i < begins.size(); ++i) {
    threads.emplace_back([&, i] {
      void *thread_env = nullptr;
      jvm->AttachCurrentThread(&thread_env, nullptr);
      ++ready;
      while (ready < count) std::this_thread::yield();
      begins[i] = bench::now();
      for (int n = 0; n < calls; ++n) call();
      ends[i] = bench::now();
      jvm->DetachCurrentThread();
    });
  }
  for (std::thread &thread : threads) thread.join();
  return (*std::max_element(ends.begin(), ends.end()) -
          *std::min_element(begins.begin(), begins.end())) /
         (calls * count);
}

template <typename Library, typename ByHand>
void compare_threads(Library library, ByHand by_hand) {
  for (const int count : {1, 2, 4, 8}) {
    const auto ours = [=] { return time_threads(count, library); };
    const auto theirs = [=] { return time_threads(count, by_hand); };
    const std::string name = std::to_string(count) + (count == 1 ? " thread" : " threads");
    bench::in_turn(seconds, ours, theirs).print("threads", name.c_str(), 1e9);
    bench::in_turn(seconds, theirs, theirs).print("threads", (name + " (noise)").c_str(), 1e9);
  }
}

char buffer[16384];

auto fetch(auto function, auto... leading) {
  return [=] {
    unsigned int size = sizeof buffer;
    return function(leading..., buffer, &size);
  };
}

auto fetch_indexed(auto function) {
  return [=] {
    unsigned int size = sizeof buffer;
    int index = 0;
    return function(1, &index, buffer, &size);
  };
}

void ignore(const char *) {}

// The types of the C++ client beside the plain call; for a string, both in a frame of its own.
void compare_types() {
  const vantiro::library grid;
  const vantiro::project project(grid, "bench");
  compare(
      "C++ types, numbers", [&] { return int{project.failed()}; },
      [&] { return vantiro_isFailed(project.handle()); });
  const auto framed = [](auto function, auto... arguments) {
    JNIEnv *jni = nullptr;
    vantiro_getJavaVM()->AttachCurrentThread(reinterpret_cast<void **>(&jni), nullptr);
    if (jni->PushLocalFrame(256) != 0) return -1;
    const int status = function(arguments...);
    jni->PopLocalFrame(nullptr);
    return status;
  };
  vantiro::run run(grid);
  const std::string name = "bench";
  compare(
      "C++ types, a string, framed", [&] { return run.name(name).handle(); },
      [&] { return framed(vantiro_peach_setName, run.handle(), name.c_str()); });
}

}  // namespace

// calls SET SECONDS [PART-OF-A-NAME]
int main(int argc, char **argv) {
  if (argc < 3) return EXIT_FAILURE;
  if (argc > 3) wanted = argv[3];
  set = argv[1];
  seconds = std::atof(argv[2]);
  require("the start", vantiro_init());
  const int run = vantiro_peach_handle();
  require("the peach handle", run);

  compare("no argument", vantiro_open, by_hand_open);
  compare(
      "int", [] { return vantiro_getLastError(7); }, [] { return by_hand_getLastError(7); });
  compare(
      "flag", [] { return vantiro_setStreamResults(1, 1); },
      [] { return by_hand_setStreamResults(1, 1); });
  compare(
      "long", [] { return vantiro_actionWait(1); }, [] { return by_hand_actionWait(1); });
  compare(
      "boolean result", [] { return vantiro_isFailed(1); }, [] { return by_hand_isFailed(1); });
  compare(
      "long result", [] { return vantiro_getUsedTime(1); }, [] { return by_hand_getUsedTime(1); });
  compare(
      "one string", [] { return vantiro_setLogLevel("INFO"); },
      [] { return by_hand_setLogLevel("INFO"); });
  compare(
      "four strings, peach", [=] { return vantiro_peach_addExeFile(run, "a", "b", "c", "755"); },
      [=] { return by_hand_peach_addExeFile(run, "a", "b", "c", "755"); });
  static const char *list[10000];
  std::fill(std::begin(list), std::end(list), "key=value");
  for (const int count : {1, 10, 100, 1000, 10000}) {
    compare(
        "list of " + std::to_string(count),
        [=] { return vantiro_setProjectParams2(1, count, list); },
        [=] { return by_hand_setProjectParams(1, count, list); }, 1 + count / 4);
  }
  compare(
      "paired lists of 5",
      [] {
        return vantiro_createBundle2(1, "1", "2", "3", "4", "5", "6", "7", "8", "9", 5, 5, list);
      },
      [] {
        const char *nine[] = {"1", "2", "3", "4", "5", "6", "7", "8", "9"};
        return by_hand_createBundle(1, nine, 5, 5, list);
      },
      4);
  compare("string of 10 bytes", fetch(vantiro_getUserLogin), fetch(by_hand_getUserLogin));
  compare("string of 10,000", fetch(vantiro_getStatisticsString, 1),
          fetch(by_hand_getStatisticsString, 1), 10);
  compare("indexed string", fetch_indexed(vantiro_getResultFiles),
          fetch_indexed(by_hand_getResultFiles));
  compare(
      "void, peach", [=] { return vantiro_peach_setName(run, "bench"); },
      [=] { return by_hand_peach_setName(run, "bench"); });
  compare("static", fetch(vantiro_getJavaSystemProperty, "user.dir"),
          fetch(by_hand_getJavaSystemProperty, "user.dir"));

  require("the callback", vantiro_peach_setIntermediateResultHandler(run, ignore));
  JNIEnv *const jni = vantiro_getJNIEnv();
  const jstring text = jni->NewStringUTF("1:a line");
  const auto deliver = [=](auto callback) {
    return [=] {
      callback(jni, nullptr, text);
      return 0;
    };
  };
  compare_types();
  compare("callback", deliver(vantiro_peach_intermediate_callback), deliver(by_hand_callback));

  if (std::string(set) == "real" && wanted.empty()) {
    compare_threads([] { return vantiro_getLastError(7); }, [] { return by_hand_getLastError(7); });
  }
}
