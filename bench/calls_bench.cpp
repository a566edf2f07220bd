// What a call costs more than the same call written by hand: one call of each kind, on the local
// grid's cheapest methods, so that as much as possible of the time is the calling.
#include <benchmark/benchmark.h>
#include <jni.h>
#include <vantiro.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>

#include "by_hand.h"
#include "ratios.h"

namespace {

constexpr int batch = 1000;

// Measures both sides; what a call leaves behind in the thread is released after each batch.
template <typename Library, typename ByHand>
void add_pair(const std::string &name, Library library, ByHand by_hand) {
  const auto add = [](const std::string &full_name, auto call) {
    benchmark::RegisterBenchmark(full_name.c_str(), [call](benchmark::State &state) {
      JNIEnv *const jni = vantiro_getJNIEnv();
      while (state.KeepRunningBatch(batch)) {
        jni->PushLocalFrame(16);
        for (int i = 0; i < batch; ++i) {
          if (call() < 0) state.SkipWithError("the call failed");
        }
        jni->PopLocalFrame(nullptr);
      }
    });
  };
  add(name + "/library", library);
  add(name + "/by_hand", by_hand);
}

void require(const char *what, int status) {
  if (status >= 0) return;
  std::fprintf(stderr, "calls_bench: %s failed with status %d\n", what, status);
  std::exit(EXIT_FAILURE);
}

const char *params[] = {"a=1", "b=2", "c=3", "d=4", "e=5", "f=6", "g=7", "h=8"};

}  // namespace

int main(int argc, char **argv) {
  std::string home = std::filesystem::temp_directory_path() / "calls_bench-XXXXXX";
  if (!mkdtemp(home.data())) require("making a directory", -1);
  require("the start", vantiro_initWithoutFile(home.c_str(), nullptr, nullptr, nullptr, 0, nullptr,
                                               nullptr, 0, 0, nullptr, nullptr));
  const int project = vantiro_createEmptyProject(vantiro_open(), 0, "bench");
  const int run = vantiro_peach_handle();
  require("createProject", project);
  require("the peach handle", run);

  add_pair(
      "int", [] { return vantiro_getLastError(0); }, [] { return by_hand::getLastError(0); });
  add_pair(
      "string in", [] { return vantiro_setLogLevel("INFO"); },
      [] { return by_hand::setLogLevel("INFO"); });
  const auto fetch = [](auto function) {
    return [function] {
      char buffer[64];
      unsigned int size = sizeof buffer;
      return function(buffer, &size);
    };
  };
  add_pair("string out", fetch(vantiro_getUserLogin), fetch(by_hand::getUserLogin));
  add_pair(
      "list of 8", [=] { return vantiro_setProjectParams2(project, 8, params); },
      [=] { return by_hand::setProjectParams(project, 8, params); });
  add_pair(
      "parallel-each", [=] { return vantiro_peach_setName(run, "bench"); },
      [=] { return by_hand::peach_setName(run, "bench"); });

  // In turn, and often enough for a median: the machine is noisy.
  std::vector<char *> arguments(argv, argv + argc);
  char interleaved[] = "--benchmark_enable_random_interleaving=true";
  char repetitions[] = "--benchmark_repetitions=11";
  char shorter[] = "--benchmark_min_time=0.1";
  arguments.insert(arguments.begin() + 1, {interleaved, repetitions, shorter});
  int count = static_cast<int>(arguments.size());
  benchmark::Initialize(&count, arguments.data());
  Ratios ratios;
  benchmark::RunSpecifiedBenchmarks(&ratios);
  vantiro_unload(1);
  std::filesystem::remove_all(home);
}
