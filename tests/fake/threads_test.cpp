// One thread with a small stack initialises, then many run every operation at once, while results
// are delivered and the parallel-each object comes and goes. ThreadSanitizer looks for races.
#include <pthread.h>

#include <atomic>
#include <thread>

#include "calls.h"
#include "support.h"

namespace {

std::atomic<int> delivered = 0;
void count(const char *text) { delivered += std::string(text) == "one"; }

// A call on the parallel-each object may find that another thread has unloaded it.
bool is_right(const Call &call, int status, const Places &out) {
  if (std::string(call.record).starts_with("peach.") && status == VANTIRO_ERROR_NOT_INITIALIZED) {
    return out.untouched();
  }
  const char type = call.result();
  if (call.gives_string()) return status == VANTIRO_OK && std::string(out.buffer) == "text";
  return status == (type == 'I' || type == 'J' ? 3 : type == 'Z' ? 1 : VANTIRO_OK);
}

void *initialize(void *) {
  EXPECT_EQ(vantiro_init(), 3);
  EXPECT_EQ(vantiro_peach_handle(), 3);
  EXPECT_EQ(vantiro_peach_setIntermediateResultHandler(1, count), VANTIRO_OK);
  return nullptr;
}

TEST(Threads, RunEveryOperationAtOnce) {
  constexpr int threads = 8, rounds = 10;
  use_runtime("fake");
  fake::returns("", 3, "text");
  fake::be_quiet();
  pthread_attr_t attributes;
  pthread_attr_init(&attributes);
  pthread_attr_setstacksize(&attributes, 64 * 1024);
  pthread_t first;
  ASSERT_EQ(pthread_create(&first, &attributes, initialize, nullptr), 0);
  ASSERT_EQ(pthread_join(first, nullptr), 0);

  const std::vector<Call> calls = all_calls();
  std::atomic<int> wrong = 0;
  const auto work = [&] {
    for (int round = 0; round < rounds; ++round) {
      for (const Call &call : calls) {
        Places out;
        wrong += !is_right(call, call.make(out), out);
      }
      fake::deliver("one");
      wrong += vantiro_peach_handle() != 3;
      vantiro_peach_setIntermediateResultHandler(1, count);
      fake::deliver("one");
      fake::forget_references();
    }
  };
  std::vector<std::thread> running;
  for (int i = 0; i < threads; ++i) running.emplace_back(work);
  for (std::thread &thread : running) thread.join();
  EXPECT_EQ(wrong, 0);
  EXPECT_GT(delivered, 0);
  EXPECT_EQ(fake::unreleased_characters(), 0);
}

}  // namespace
