// The table of all calls, driven through what every call has in common.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <regex>

#include "calls.h"
#include "initialized_java.h"

namespace {

using testing::AnyOf;
using testing::HasSubstr;
using testing::Matches;

using Calls = InitializedJava;

TEST_F(Calls, BringEveryArgumentToItsPlaceInJava) {
  for (const Call &call : all_calls()) {
    for (const bool flag : {false, true}) {
      recorder.answer(3);
      Places out(flag);
      call.make(out);
      EXPECT_EQ(recorder.take(), call.expected(flag)) << call;
    }
  }
}

// What `call` gives when Java answers with `number` and `text`, and in which places.
int result_of(Recorder &recorder, const Call &call, Places &out, jlong number,
              const char *text = "") {
  recorder.answer(number, text);
  const int result = call.make(out);
  recorder.take();
  return result;
}

TEST_F(Calls, BringNumbersBackAsTheyAre) {
  constexpr int top = 1 << 31;
  for (const Call &call : all_calls()) {
    if (call.gives_string()) continue;
    const char type = call.result();
    for (const int number : {0, 1, 2147483647, -1, -11, top}) {
      Places out;
      const int result = result_of(recorder, call, out, number);
      const bool as_it_is = type == 'I' || type == 'J';
      EXPECT_EQ(result, as_it_is ? number : type == 'Z' ? number != 0 : 0) << call;
    }
    if (type != 'J') continue;
    Places out;
    EXPECT_EQ(result_of(recorder, call, out, 4294967301), 5) << call;
    EXPECT_EQ(result_of(recorder, call, out, 3000000000), -1294967296) << call;
    EXPECT_EQ(result_of(recorder, call, out, jlong{1} << 32), 0) << call;
  }
}

TEST_F(Calls, BringStringsBackThroughTheBuffer) {
  for (const Call &call : all_calls()) {
    if (!call.gives_string()) continue;
    Places out;
    EXPECT_EQ(result_of(recorder, call, out, 5, "söme"), 0) << call;
    EXPECT_EQ(std::string(out.buffer, 7), std::string("söme\0#", 7)) << call;
    EXPECT_EQ(out.size, 6u) << call;
    EXPECT_EQ(out.index, call.is_indexed() ? 5 : 2) << call;
  }
}

TEST_F(Calls, TellThatJavaThrewAndWriteNothing) {
  for (const Call &call : all_calls()) {
    vantiro_peach_handle();
    recorder.fail("");
    Places out;
    testing::internal::CaptureStderr();
    EXPECT_EQ(call.make(out), VANTIRO_ERROR_UNCAUGHT_EXCEPTION) << call;
    EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr("scripted failure")) << call;
    EXPECT_TRUE(out.untouched()) << call;
    recorder.fail(nullptr);
    EXPECT_EQ(result_of(recorder, management_calls()[2], out, 77), 77) << "after " << call;
  }
}

// The two that explain themselves put 54 bytes into the buffer.
void expect_not_initialized(const Call &call) {
  const bool explains = call.is("vantiro_getLastErrorMessage") || call.is("vantiro_getPluginConf");
  Places out;
  EXPECT_EQ(call.make(out), VANTIRO_ERROR_NOT_INITIALIZED) << call;
  if (!explains) {
    EXPECT_TRUE(out.untouched()) << call;
    return;
  }
  EXPECT_EQ(std::string(out.buffer, 55),
            std::string("No Error Message available; Java is not initialized.\0\0#", 55));
  EXPECT_EQ(out.size, 54u);
  Places small;
  small.size = 53;
  EXPECT_EQ(call.make(small), VANTIRO_ERROR_NOT_INITIALIZED) << call;
  EXPECT_EQ(small.size, 54u);
  EXPECT_EQ(small.buffer[0], '#');
}

TEST(CallsBeforeInitialization, AreRefusedAndWriteNothing) {
  for (const Call &call : all_calls()) expect_not_initialized(call);
  EXPECT_EQ(vantiro_peach_handle(), VANTIRO_ERROR_NOT_INITIALIZED);
  EXPECT_EQ(vantiro_getPluginClass("name"), nullptr);
  EXPECT_EQ(vantiro_getJNIEnv(), nullptr);
  EXPECT_EQ(vantiro_getJavaVM(), nullptr);

  ASSERT_EQ(vantiro_initJava(), 0);
  for (const Call &call : all_calls()) expect_not_initialized(call);
  EXPECT_EQ(vantiro_peach_handle(), VANTIRO_ERROR_NOT_INITIALIZED);

  ASSERT_EQ(vantiro_init(), 0);
  for (const Call &call : peach_calls()) expect_not_initialized(call);
}

// A new function must not stay out of the table unnoticed.
TEST(Table, HasEveryFunctionThatReachesJava) {
  const std::regex name("VANTIRO_API int (vantiro_\\w+)");
  const auto elsewhere =
      AnyOf("vantiro_initJava", "vantiro_init", "vantiro_initFile", "vantiro_initFileWithPassword",
            "vantiro_initWithoutFile", "vantiro_findJavaInPath", "vantiro_peach_handle",
            "vantiro_getJavaSystemProperty");
  const std::vector<Call> calls = all_calls();
  ASSERT_GT(calls.size(), 130u);
  for (const auto &header : std::filesystem::directory_iterator(HEADERS)) {
    std::ifstream file(header.path());
    const std::string text((std::istreambuf_iterator<char>(file)), {});
    for (std::sregex_iterator match(text.begin(), text.end(), name), end; match != end; ++match) {
      const std::string function = (*match)[1];
      const bool listed = std::any_of(calls.begin(), calls.end(),
                                      [&](const Call &call) { return call.is(function.c_str()); });
      EXPECT_TRUE(listed || Matches(elsewhere)(function)) << function;
    }
  }
}

}  // namespace
