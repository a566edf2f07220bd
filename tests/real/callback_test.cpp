// Intermediate results: from Java threads through the library to a function of the host.
#include <atomic>
#include <mutex>
#include <set>
#include <string>
#include <thread>

#include "calls.h"
#include "initialized_java.h"

namespace {

std::atomic<int> first_calls, second_calls;
std::mutex mutex;
std::set<std::thread::id> callers;
std::set<std::string> texts;

void first(const char *text) {
  ++first_calls;
  const std::lock_guard lock(mutex);
  callers.insert(std::this_thread::get_id());
  texts.insert(text);
}

void second(const char *) { ++second_calls; }

using Callback = InitializedJava;

// What a callback may do: call the library, and have itself replaced.
void calls_back(const char *text) {
  Places out;
  vantiro_getTempDir(OUT);
  if (std::string(text) == out.buffer) ++first_calls;
  vantiro_peach_setIntermediateResultHandler(vantiro_peach_handle(), second);
}

TEST_F(Callback, MayCallTheLibrary) {
  ASSERT_EQ(vantiro_peach_setIntermediateResultHandler(1, calls_back), 0);
  recorder.answer(3, "text");
  recorder.deliver("text", 1, 1);
  recorder.deliver("text", 1, 2);
  EXPECT_EQ(first_calls, 1);
  EXPECT_EQ(second_calls, 2);
}

TEST_F(Callback, ReceivesResultsFromManyJavaThreadsAtOnce) {
  ASSERT_EQ(vantiro_peach_setIntermediateResultHandler(1, first), 0);
  recorder.deliver("räsult", 8, 100);
  recorder.deliver("", 1, 1);
  EXPECT_EQ(first_calls, 801);
  EXPECT_EQ(texts, (std::set<std::string>{"räsult", ""}));
  EXPECT_GT(callers.size(), 1u);
  EXPECT_FALSE(callers.contains(std::this_thread::get_id()));
}

TEST_F(Callback, IsTheLatestForEveryHandler) {
  ASSERT_EQ(vantiro_peach_setIntermediateResultHandler(1, first), 0);
  ASSERT_EQ(vantiro_peach_setIntermediateResultHandler(2, second), 0);
  recorder.deliver("both runs", 2, 5);
  EXPECT_EQ(first_calls, 0);
  EXPECT_EQ(second_calls, 10);
  ASSERT_EQ(vantiro_peach_setIntermediateResultHandler(1, first), 0);
  recorder.deliver("again", 3, 1);
  EXPECT_EQ(first_calls, 3);
  EXPECT_EQ(second_calls, 10);
}

TEST_F(Callback, ThatIsNullDropsResultsAndANullResultIsDropped) {
  ASSERT_EQ(vantiro_peach_setIntermediateResultHandler(1, first), 0);
  recorder.deliver(nullptr, 1, 1);
  ASSERT_EQ(vantiro_peach_setIntermediateResultHandler(1, nullptr), 0);
  EXPECT_EQ(vantiro_peach_intermediate_callback_fun, nullptr);
  recorder.deliver("nobody listens", 2, 1);
  EXPECT_EQ(first_calls, 0);
}

TEST_F(Callback, StaysWhenAnotherIsRefusedAndAfterTeardown) {
  ASSERT_EQ(vantiro_peach_setIntermediateResultHandler(1, first), 0);
  recorder.fail("setIntermediateResultHandler");
  EXPECT_EQ(vantiro_peach_setIntermediateResultHandler(2, second),
            VANTIRO_ERROR_UNCAUGHT_EXCEPTION);
  recorder.fail(nullptr);
  EXPECT_EQ(vantiro_unload(1), 0);
  EXPECT_EQ(vantiro_peach_setIntermediateResultHandler(3, second), VANTIRO_ERROR_NOT_INITIALIZED);
  EXPECT_EQ(vantiro_init(), 0);
  EXPECT_EQ(vantiro_peach_intermediate_callback_fun, first);
  recorder.deliver("still", 1, 4);
  EXPECT_EQ(first_calls, 4);
  EXPECT_EQ(second_calls, 0);
}

}  // namespace
