// Every call of the runtime that can fail is made to fail, one after the other.
#include <functional>
#include <vector>

#include "support.h"

namespace {

using Torture = Initialized;
using Statuses = std::vector<int>;

// The status of `call` when its first, second, third... call of the runtime fails. After each the
// library must work as before.
Statuses failing_in_turn(
    const std::function<int()> &call, int success = VANTIRO_OK,
    const std::function<void()> &prepare = [] {}) {
  prepare();
  fake::fail_any(0);
  EXPECT_EQ(call(), success);
  const int calls = fake::fallible_calls();
  Statuses statuses;
  for (int i = 1; i <= calls; ++i) {
    prepare();
    fake::fail_any(i);
    statuses.push_back(call());
    fake::fail_any(0);
    EXPECT_EQ(fake::unreleased_characters(), 0);
    if (statuses.back() == VANTIRO_ERROR_UNCAUGHT_EXCEPTION) {
      EXPECT_EQ(fake::pending(), "");
    }
    EXPECT_EQ(call(), success) << "after failure " << i;
  }
  return statuses;
}

const char *strings[] = {"a", "b"};
char buffer[8];
unsigned int size;

TEST_F(Torture, OfStarting) {
  const auto stop = [] {
    fake::stop_machine();
    jvm = nullptr, env = nullptr, cls = nullptr, sgc = nullptr;
  };
  // Created: created machines, creation, class, its reference, attachment; constructor, object,
  // its reference, initialiser, string, call.
  EXPECT_EQ(failing_in_turn([] { return vantiro_initFile("f"); }, VANTIRO_OK, stop),
            (Statuses{0, -11, -12, -12, 0, -14, -16, -16, -15, -13, -13}));
  const auto join = [&stop] {
    stop();
    fake::run_machine();
  };
  // Joined: created machines (a second one is not asked for), attachment, environment, ...
  EXPECT_EQ(failing_in_turn([] { return vantiro_initFile("f"); }, VANTIRO_OK, join),
            (Statuses{-11, -11, -11, -12, -12, 0, -14, -16, -16, -15, -13, -13}));
}

TEST_F(Torture, OfManagementCalls) {
  // Attachment, look-up, string, call.
  EXPECT_EQ(failing_in_turn([] { return vantiro_setLogLevel("x"); }),
            (Statuses{-11, -12, -13, -13}));
  // What a list loses is discarded: initial element, class, array, two strings and their storing.
  EXPECT_EQ(failing_in_turn([] { return vantiro_createJob2(1, 2, strings); }),
            (Statuses{-11, -12, 0, 0, 0, 0, 0, 0, 0, -13}));
  EXPECT_EQ(failing_in_turn([] { return size = 8, vantiro_getResultFile(1, buffer, &size); }),
            (Statuses{-11, -12, -13, 0}));
  EXPECT_EQ(
      failing_in_turn([] { return size = 8, vantiro_getJavaSystemProperty("k", buffer, &size); }),
      (Statuses{-11, -12, -12, -13, -13, 0}));
  fake::returns("getResultFileCount", 1);
  const auto indexed = [] {
    int index = 0;
    return size = 8, vantiro_getResultFiles(1, &index, buffer, &size);
  };
  EXPECT_EQ(failing_in_turn(indexed), (Statuses{-11, -12, -12, -13, -13, 0}));
}

TEST_F(Torture, OfTheParallelEachObject) {
  fake::returns("get", 5);
  // Attachment, look-up, class, its reference, object, its reference; look-up, call.
  EXPECT_EQ(failing_in_turn([] { return vantiro_peach_handle(); }, 5,
                            [] { pwcls = nullptr, pwobj = nullptr; }),
            (Statuses{-11, -12, -13, -13, -13, -13, -12, -13}));
  EXPECT_EQ(failing_in_turn([] { return vantiro_peach_setJobFileNames3(1, 2, strings); }),
            (Statuses{-11, -12, -13, -13, -13, -13, -13, -13, -13, -13}));
  EXPECT_EQ(failing_in_turn(
                [] { return vantiro_peach_setIntermediateResultHandler(1, [](const char *) {}); }),
            (Statuses{-11, -13, -12, -13, -13, -12, -13}));
}

}  // namespace
