// Strings, lists and references on their way in and out.
#include "calls.h"
#include "initialized_java.h"

namespace {

using Strings = InitializedJava;

std::vector<Call> string_calls() {
  std::vector<Call> calls;
  for (const Call &call : all_calls()) {
    if (call.gives_string()) calls.push_back(call);
  }
  return calls;
}

Places places_with_room_for(unsigned int capacity) {
  Places out;
  out.size = capacity;
  return out;
}

TEST_F(Strings, FitExactlyOrNotAtAll) {
  recorder.answer(3, "four");
  for (const Call &call : string_calls()) {
    Places exact = places_with_room_for(5);
    EXPECT_EQ(call.make(exact), VANTIRO_OK) << call;
    EXPECT_EQ(std::string(exact.buffer, 6), std::string("four\0#", 6)) << call;

    const bool indexed = call.is_indexed();
    Places small = places_with_room_for(4);
    EXPECT_EQ(call.make(small), VANTIRO_ERROR_BUFFER_TOO_SMALL) << call;
    EXPECT_EQ(small.size, 5u) << call;
    EXPECT_EQ(small.index, 2) << call;
    EXPECT_EQ(std::string(small.buffer, 2), indexed ? std::string("\0#", 2) : "##") << call;

    Places none = places_with_room_for(0);
    EXPECT_EQ(call.make(none), VANTIRO_ERROR_BUFFER_TOO_SMALL) << call;
    EXPECT_EQ(none.size, 5u) << call;
    EXPECT_EQ(none.buffer[0], '#') << call;
  }
}

TEST_F(Strings, ThatAreNullFollowTheRuleOfTheirFunction) {
  recorder.answer(3, nullptr);
  for (const Call &call : string_calls()) {
    const bool empty_on_null = call.is("vantiro_getTempDir") || call.is("vantiro_getUserLogin") ||
                               call.is("vantiro_getLastErrorMessage") ||
                               call.is("vantiro_getPluginConf") ||
                               call.is("vantiro_describeStatusCode");
    Places out;
    EXPECT_EQ(call.make(out), VANTIRO_OK) << call;
    EXPECT_EQ(out.size, empty_on_null ? 1u : 0u) << call;
    EXPECT_EQ(out.buffer[0], empty_on_null ? '\0' : '#') << call;
    EXPECT_EQ(out.index, call.is_indexed() ? 3 : 2) << call;

    Places none = places_with_room_for(0);
    EXPECT_EQ(call.make(none), empty_on_null ? VANTIRO_ERROR_BUFFER_TOO_SMALL : VANTIRO_OK) << call;
    EXPECT_EQ(none.buffer[0], '#') << call;
  }
}

TEST_F(Strings, OfAListAreFoundByPositionOnly) {
  for (const int count : {0, 2}) {
    recorder.answer(count, "element");
    for (const Call &call : string_calls()) {
      if (!call.is_indexed()) continue;
      for (const int position : {-1, 2, -2147483647 - 1, 2147483647}) {
        for (const unsigned int capacity : {0u, 1u}) {
          Places out = places_with_room_for(capacity);
          out.index = position;
          EXPECT_EQ(call.make(out), VANTIRO_ERROR_INDEX_OUT_OF_BOUNDS) << call;
          EXPECT_EQ(out.index, count) << call;
          EXPECT_EQ(out.size, 1u) << call;
          EXPECT_EQ(out.buffer[0], capacity ? '\0' : '#') << call;
        }
      }
      recorder.take();
    }
  }
}

TEST_F(Strings, OfAListMayThrowBehindTheirCount) {
  recorder.answer(3);
  recorder.fail("FileName");
  Places out;
  EXPECT_EQ(vantiro_getResultFiles(1, &out.index, OUT), VANTIRO_ERROR_UNCAUGHT_EXCEPTION);
  EXPECT_TRUE(out.untouched());
}

TEST_F(Strings, OfAnyLengthAndInModifiedUtf8ComeBack) {
  std::string text = "\xC0\x80 \xED\xA0\xBD\xED\xB8\x80 ";
  for (int i = 0; i < 100000; ++i) text += "lång ";
  recorder.answer(0, text.c_str());
  std::string buffer(text.size() + 1, '#');
  auto size = static_cast<unsigned int>(buffer.size());
  EXPECT_EQ(vantiro_getResultDirectory(1, buffer.data(), &size), VANTIRO_OK);
  EXPECT_TRUE(buffer == text + '\0');
  EXPECT_EQ(size, buffer.size());
  EXPECT_EQ(vantiro_setLogLevel(text.c_str()), 0);
  EXPECT_EQ(recorder.take().substr(0, 73),
            "getResultDirectory(I)S 1\nsetLogLevel(S)I '<0> <d83d><de00> l<e5>ng l<e5>n");
}

TEST_F(Strings, AndListsThatAreNullReachJavaAsNull) {
  const char *with_null[] = {"a", nullptr, "b"};
  vantiro_createProject2(1, 2, nullptr, 3, with_null);
  vantiro_createProject3(1, 2, "", 3, nullptr);
  vantiro_createJob2(1, -5, with_null);
  vantiro_createJob(1, -5);
  vantiro_createJob(1, 0);
  vantiro_createJob3(1, 0, nullptr);
  vantiro_peach_addJobFileWithDir3(1, nullptr, -1, with_null);
  vantiro_peach_addJobFile(1, 0);
  vantiro_createBundle2(1, nullptr, "", "", "", "", "", "", "", "", 0, 2, five_strings);
  vantiro_createBundle2(1, "", "", "", "", "", "", "", "", nullptr, 1, 0, five_strings);
  vantiro_createBundle(1, "", "", "", "", "", "", "", "", "", -1, 2, "a", "b");
  const std::string bundle = "\ncreateBundle(ISSSSSSSSSAA)I 1 ";
  EXPECT_EQ(
      recorder.take(),
      "createProject(IISA)I 1 2 null ['a' null 'b']\ncreateProject(IISA)I 1 2 '' "
      "null\ncreateJob(IA)I 1 null\ncreateJob(IA)I 1 null\ncreateJob(IA)I 1 []\ncreateJob(IA)I 1 "
      "[]\npeach.addJobFileWithDir(ISA)V 1 null null\npeach.addJobFile(IA)V 1 []" +
          bundle + "null '' '' '' '' '' '' '' '' [] ['un' 'du']" + bundle +
          "'' '' '' '' '' '' '' '' null ['un'] []" + bundle +
          "'' '' '' '' '' '' '' '' '' null ['a' 'b']");
}

TEST_F(Strings, OfTheJavaPlatformFollowTheSameRules) {
  Places out;
  EXPECT_EQ(vantiro_getJavaSystemProperty("file.separator", OUT), VANTIRO_OK);
  EXPECT_EQ(std::string(out.buffer, 3), std::string("/\0#", 3));
  EXPECT_EQ(out.size, 2u);
  Places small = places_with_room_for(1);
  EXPECT_EQ(vantiro_getJavaSystemProperty("file.separator", small.buffer, &small.size),
            VANTIRO_ERROR_BUFFER_TOO_SMALL);
  EXPECT_EQ(small.size, 2u);
  EXPECT_EQ(small.buffer[0], '#');
  Places unset;
  EXPECT_EQ(vantiro_getJavaSystemProperty("there.is.none", unset.buffer, &unset.size), VANTIRO_OK);
  EXPECT_EQ(unset.size, 0u);
  EXPECT_EQ(unset.buffer[0], '#');
  for (const char *key : {"", static_cast<const char *>(nullptr)}) {
    Places refused;
    EXPECT_EQ(vantiro_getJavaSystemProperty(key, refused.buffer, &refused.size),
              VANTIRO_ERROR_UNCAUGHT_EXCEPTION);
    EXPECT_TRUE(refused.untouched());
    EXPECT_FALSE(recorder.jni()->ExceptionCheck());
  }
}

TEST_F(Strings, OfExceptionsMayBeEmptyForeignOrLong) {
  for (const std::string &message :
       {std::string(), std::string("\xc3\xa4\xe2\x82\xac"), std::string(1 << 20, 'x')}) {
    recorder.fail("open", message.c_str());
    testing::internal::CaptureStderr();
    EXPECT_EQ(vantiro_open(), VANTIRO_ERROR_UNCAUGHT_EXCEPTION);
    EXPECT_NE(testing::internal::GetCapturedStderr().find("IllegalStateException"),
              std::string::npos);
    EXPECT_EQ(vantiro_close(1), VANTIRO_OK);
  }
}

using References = InitializedJava;

TEST_F(References, AreHandedOutAsTheyAre) {
  jobject plugin = nullptr;
  EXPECT_EQ(vantiro_getPlugin("name", &plugin), 0);
  EXPECT_TRUE(plugin && recorder.jni()->IsSameObject(plugin, recorder.last_object()));
  const jclass type = vantiro_getPluginClass("ä");
  EXPECT_TRUE(type && recorder.jni()->IsSameObject(type, recorder.last_object()));
  EXPECT_EQ(recorder.take(),
            "getPlugin(S)LVantiroManagerPlugin; 'name'\ngetPluginClass(S)LClass; '<e4>'");

  recorder.answer(0, nullptr);
  EXPECT_EQ(vantiro_getPluginClass("name"), nullptr);
  EXPECT_EQ(vantiro_getPlugin("name", &plugin), 0);
  EXPECT_EQ(plugin, nullptr);
  plugin = type;
  recorder.fail("getPlugin");
  EXPECT_EQ(vantiro_getPluginClass("name"), nullptr);
  EXPECT_EQ(vantiro_getPlugin("name", &plugin), VANTIRO_ERROR_UNCAUGHT_EXCEPTION);
  EXPECT_EQ(plugin, nullptr);
  EXPECT_FALSE(recorder.jni()->ExceptionCheck());
}

}  // namespace
