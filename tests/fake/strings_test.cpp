// Strings into callers' buffers, at every capacity around the size that is needed.
#include <functional>

#include "support.h"

namespace {

using Strings = Initialized;
using Fill = std::function<int(char *, unsigned int *)>;

struct Answer {
  int status;
  unsigned int size;
  std::string buffer;  // all of it, whatever the capacity
  bool operator==(const Answer &) const = default;
};
void PrintTo(const Answer &answer, std::ostream *out) {
  *out << answer.status << ", " << answer.size << ", " << testing::PrintToString(answer.buffer);
}

const std::string untouched(60, '#');
// What is written, and behind it what was there before.
std::string written(const std::string &text) { return text + untouched.substr(text.size()); }
std::string with_nul(const std::string &text) { return written(text + '\0'); }

Answer ask(const Fill &fill, unsigned int capacity) {
  std::string buffer = untouched;
  unsigned int size = capacity;
  const int status = fill(buffer.data(), &size);
  return {status, size, buffer};
}

TEST_F(Strings, AreReleasedWhetherTheyFitOrNot) {
  const Fill fill = vantiro_getTempDir;
  fake::returns_text("getTempDir", "hello");
  EXPECT_EQ(ask(fill, 5), (Answer{VANTIRO_ERROR_BUFFER_TOO_SMALL, 6, untouched}));
  EXPECT_EQ(ask(fill, 6), (Answer{VANTIRO_OK, 6, with_nul("hello")}));
  EXPECT_EQ(ask(fill, 0x80000000), (Answer{VANTIRO_OK, 6, with_nul("hello")}));
  EXPECT_EQ(fake::unreleased_characters(), 0);
  fake::fail("GetStringUTFChars");
  EXPECT_EQ(ask(fill, 60), (Answer{VANTIRO_OK, 0, untouched}));
}

TEST_F(Strings, OfAListComeByIndex) {
  int index;
  const Fill fill = [&index](auto... out) { return vantiro_getResultFiles(7, &index, out...); };
  const auto at = [&](int position, unsigned int capacity) {
    index = position;
    return ask(fill, capacity);
  };
  fake::returns("getResultFileCount", 3);
  fake::returns_text("getResultFileName", "f");
  EXPECT_EQ(at(1, 2), (Answer{VANTIRO_OK, 2, with_nul("f")}));
  EXPECT_EQ(index, 3);
  EXPECT_EQ(
      fake::trace(),
      lines({"AttachCurrentThread", "GetMethodID ManagementImpl getResultFileCount (I)I",
             "GetMethodID ManagementImpl getResultFileName (II)Ljava/lang/String;",
             "ExceptionClear", "CallIntMethod getResultFileCount 7", "ExceptionOccurred",
             "CallObjectMethod getResultFileName 7 1", "ExceptionOccurred",
             "GetStringUTFChars \"f\"", "ReleaseStringUTFChars \"f\"", "DeleteLocalRef \"f\""}));
  EXPECT_EQ(at(2, 1), (Answer{VANTIRO_ERROR_BUFFER_TOO_SMALL, 2, with_nul("")}));
  EXPECT_EQ(index, 2);
  EXPECT_EQ(fake::trace("DeleteLocalRef"), "DeleteLocalRef \"f\"\n");
  EXPECT_EQ(at(0, 0), (Answer{VANTIRO_ERROR_BUFFER_TOO_SMALL, 2, untouched}));
  for (const int outside : {-1, 3}) {
    EXPECT_EQ(at(outside, 1), (Answer{VANTIRO_ERROR_INDEX_OUT_OF_BOUNDS, 1, with_nul("")}));
    EXPECT_EQ(index, 3);
    EXPECT_EQ(at(outside, 0), (Answer{VANTIRO_ERROR_INDEX_OUT_OF_BOUNDS, 1, untouched}));
  }
  fake::fail("GetStringUTFChars");
  EXPECT_EQ(at(0, 60), (Answer{VANTIRO_OK, 0, untouched}));
  fake::returns_null("getResultFileName");
  EXPECT_EQ(at(0, 60), (Answer{VANTIRO_OK, 0, untouched}));
  for (const char *method : {"getResultFileName", "getResultFileCount"}) {
    fake::throws(method);
    EXPECT_EQ(at(1, 60), (Answer{VANTIRO_ERROR_UNCAUGHT_EXCEPTION, 60, untouched}));
    EXPECT_EQ(index, 1);
  }
  fake::trace();
  fake::lacks("ManagementImpl.getResultFileCount");
  EXPECT_EQ(at(1, 60), (Answer{VANTIRO_ERROR_METHOD_NOT_FOUND, 60, untouched}));
  EXPECT_EQ(index, 1);
  EXPECT_NE(fake::trace().find("getResultFileName"), std::string::npos) << "both are looked up";
}

TEST_F(Strings, OfThePlatformNeedOnlyTheRuntime) {
  const Fill fill = [](auto... out) { return vantiro_getJavaSystemProperty("k", out...); };
  sgc = nullptr;
  cls = nullptr;
  fake::returns_text("getProperty", "v");
  EXPECT_EQ(ask(fill, 2), (Answer{VANTIRO_OK, 2, with_nul("v")}));
  EXPECT_EQ(
      fake::trace(),
      lines({"AttachCurrentThread", "FindClass java/lang/System",
             "GetStaticMethodID System getProperty (Ljava/lang/String;)Ljava/lang/String;",
             "ExceptionClear", "NewStringUTF \"k\"", "CallStaticObjectMethod getProperty \"k\"",
             "ExceptionOccurred", "GetStringUTFChars \"v\"", "ReleaseStringUTFChars \"v\""}));
  for (const char *missing : {"System.getProperty", "java/lang/System"}) {
    fake::lacks(missing);
    EXPECT_EQ(ask(fill, 60), (Answer{VANTIRO_ERROR_METHOD_NOT_FOUND, 60, untouched}));
    EXPECT_EQ(fake::pending(), "");
  }
  env = nullptr;
  EXPECT_EQ(ask(fill, 60), (Answer{VANTIRO_ERROR_NOT_INITIALIZED, 60, untouched}));
}

TEST(StringsWithoutRuntime, DescribeTheLibrarysOwnCodes) {
  const std::pair<int, std::string> texts[] = {
      {0, "OK"},
      {-11, "Java is not initialized"},
      {-12, "Java method could not be found"},
      {-13, "Uncaught exception thrown from Java"},
      {-14, "Unable to find the constructor of Management Interface"},
      {-15, "Unable to find the initializer of Management Interface"},
      {-16, "Unable to initialize Management Interface"},
      {-17, "Unknown error"},
      {-18, "Unable to find Java"},
      {-19, "Unable to find Java version"},
      {-20, "Unable to find Java keypath"},
      {-21, "Unable to find Java runtime library location"},
      {-22, "Unable to find Java runtime library"},
      {-23, "String buffer is too small."},
      {-24, "File index is out of bounds."},
      {-25, "VARIANT type is invalid, BSTR expected."},
  };
  for (const auto &[code, text] : texts) {
    const Fill fill = [code = code](auto... out) {
      return vantiro_describeStatusCode(code, out...);
    };
    const auto need = static_cast<unsigned int>(text.size() + 1);
    EXPECT_EQ(ask(fill, need), (Answer{VANTIRO_OK, need, with_nul(text)}));
    EXPECT_EQ(ask(fill, need - 1), (Answer{VANTIRO_ERROR_BUFFER_TOO_SMALL, need, untouched}));
  }
  for (const int code : {-26, -10, -1, 1}) {
    const Fill fill = [code](auto... out) { return vantiro_describeStatusCode(code, out...); };
    EXPECT_EQ(ask(fill, 60), (Answer{VANTIRO_ERROR_NOT_INITIALIZED, 60, untouched}));
  }
}

TEST(StringsWithoutRuntime, SayThatThereIsNoMessageYet) {
  const std::string text = "No Error Message available; Java is not initialized.";
  EXPECT_EQ(ask(vantiro_getLastErrorMessage, 54),
            (Answer{VANTIRO_ERROR_NOT_INITIALIZED, 54, written(text + std::string(2, '\0'))}));
  EXPECT_EQ(ask(vantiro_getLastErrorMessage, 53),
            (Answer{VANTIRO_ERROR_NOT_INITIALIZED, 54, untouched}));
}

}  // namespace
