// How a call reaches its Java method: guard, order of the steps, arguments and plain results.
#include <thread>

#include "support.h"

namespace {

using Forwarding = Initialized;

const char *strings[] = {"a", "b", "c"};

// A list becoming an array whose slots all start as the empty string.
std::string empty_array(int length) {
  return lines({"NewStringUTF \"\"", "FindClass java/lang/String",
                "NewObjectArray " + std::to_string(length) + " String \"\""});
}
std::string element(int index, const std::string &text) {
  return lines({"NewStringUTF \"" + text + "\"",
                "SetObjectArrayElement " + std::to_string(index) + " \"" + text + "\""});
}

// The last call that reached Java; the call must have succeeded.
std::string reached(int status) {
  EXPECT_EQ(status, VANTIRO_OK);
  return fake::trace("Call");
}

TEST_F(Forwarding, BuildsListsThenClearsThenConvertsTheRest) {
  const std::string expected =
      lines({"AttachCurrentThread",
             "GetMethodID ManagementImpl createProject "
             "(IILjava/lang/String;[Ljava/lang/String;)I"}) +
      empty_array(2) + element(0, "a") + element(1, "b") +
      lines({"ExceptionClear", "NewStringUTF \"t\"",
             "CallIntMethod createProject 1 -2 \"t\" [\"a\", \"b\"]", "ExceptionOccurred"});
  fake::returns("createProject", -7);
  EXPECT_EQ(vantiro_createProject(1, -2, "t", 2, "a", "b"), -7);
  EXPECT_EQ(fake::trace(), expected);
  EXPECT_EQ(vantiro_createProject2(1, -2, "t", 2, strings), -7);
  EXPECT_EQ(fake::trace(), expected);
  EXPECT_EQ(vantiro_createProject3(1, -2, "t", 2, strings), -7);
  EXPECT_EQ(fake::trace(), expected);
}

TEST_F(Forwarding, MakesBothPairedListsBeforeItFillsThem) {
  const auto call = [](int count1, int count2) {
    return vantiro_createBundle2(1, "1", "2", "3", "4", "5", "6", "7", "8", "9", count1, count2,
                                 strings);
  };
  EXPECT_EQ(call(1, 2), VANTIRO_OK);
  const std::string trace = fake::trace();
  EXPECT_NE(trace.find(empty_array(1) + empty_array(2) + element(0, "a") + element(0, "b") +
                       element(1, "c") + "ExceptionClear\n"),
            trace.npos)
      << trace;
  const std::string start = R"(CallIntMethod createBundle 1 "1" "2" "3" "4" "5" "6" "7" "8" "9" )";
  EXPECT_EQ(reached(call(0, 2)), start + "[] [\"a\", \"b\"]\n");
  EXPECT_EQ(reached(call(2, 0)), start + "[\"a\", \"b\"] []\n");
  EXPECT_EQ(reached(call(-1, 2)), start + "null [\"a\", \"b\"]\n");
  EXPECT_EQ(reached(call(2, -1)), start + "[\"a\", \"b\"] null\n");
  EXPECT_EQ(reached(vantiro_createSignedBundle(1, "1", "2", "3", "4", "5", "6", "7", "8", "9", "10",
                                               "11", 1, 2, "a", "b", "c")),
            R"(CallIntMethod createSignedBundle 1 "1" "2" "3" "4" "5" "6" "7" "8" "9" "10" )"
            "[\"a\"] [\"b\", \"c\"] \"11\"\n");
}

TEST_F(Forwarding, HandsOverNullForWhatIsNotThere) {
  const char *with_null[] = {"a", nullptr};
  EXPECT_EQ(reached(vantiro_setLogLevel(nullptr)), "CallIntMethod setLogLevel null\n");
  EXPECT_EQ(reached(vantiro_createJob2(1, 0, nullptr)), "CallIntMethod createJob 1 []\n");
  EXPECT_EQ(reached(vantiro_createJob2(1, 1, nullptr)), "CallIntMethod createJob 1 null\n");
  EXPECT_EQ(reached(vantiro_createJob2(1, -1, strings)), "CallIntMethod createJob 1 null\n");
  EXPECT_EQ(reached(vantiro_createJob(1, -1)), "CallIntMethod createJob 1 null\n");
  EXPECT_EQ(reached(vantiro_createJob(1, 0)), "CallIntMethod createJob 1 []\n");
  EXPECT_EQ(reached(vantiro_createJob2(1, 2, with_null)),
            "CallIntMethod createJob 1 [\"a\", null]\n");
}

TEST_F(Forwarding, DiscardsTheFailureOfAList) {
  for (const char *function : {"FindClass", "NewObjectArray"}) {
    fake::fail(function);
    EXPECT_EQ(reached(vantiro_createJob2(1, 2, strings)), "CallIntMethod createJob 1 null\n");
  }
  fake::fail("NewStringUTF", 2);
  EXPECT_EQ(reached(vantiro_createJob2(1, 2, strings)),
            "CallIntMethod createJob 1 [null, \"b\"]\n");
}

TEST_F(Forwarding, FitsNumbersAndFlags) {
  EXPECT_EQ(reached(vantiro_actionWait(-2)), "CallBooleanMethod actionWait -2L\n");
  EXPECT_EQ(reached(vantiro_downloadPartialResult(1)), "CallIntMethod downloadResult 1 1\n");
  EXPECT_EQ(reached(vantiro_setStreamResults(1, 255)), "CallIntMethod setStreamResults 1 255\n");
  EXPECT_EQ(reached(vantiro_unload2(2, 0)), "CallIntMethod unload 2 0\n");
  for (const int truth : {1, 2, 128}) {
    fake::returns("isCompleted", truth);
    EXPECT_EQ(vantiro_isCompleted(1), 1);
  }
  fake::returns("getUsedTime", (1LL << 32) - 1);
  EXPECT_EQ(vantiro_getUsedTime(1), -1);
  fake::returns("getUsedTime", 0x1'7fff'ffff);
  EXPECT_EQ(vantiro_getUsedTime(1), 0x7fffffff);
}

TEST_F(Forwarding, HandsOutNoPluginWhenJavaThrows) {
  jobject plugin = nullptr;
  EXPECT_EQ(vantiro_getPlugin("x", &plugin), VANTIRO_OK);
  EXPECT_NE(plugin, nullptr);
  fake::throws("getPlugin");
  EXPECT_EQ(vantiro_getPlugin("x", &plugin), VANTIRO_ERROR_UNCAUGHT_EXCEPTION);
  EXPECT_EQ(plugin, nullptr);
}

TEST_F(Forwarding, CallsNothingWithoutTheWholeHostState) {
  const auto expect_refusal = [](auto &variable) {
    const auto value = variable;
    variable = nullptr;
    EXPECT_EQ(vantiro_open(), VANTIRO_ERROR_NOT_INITIALIZED);
    EXPECT_EQ(vantiro_createJob2(1, 2, nullptr), VANTIRO_ERROR_NOT_INITIALIZED);
    EXPECT_EQ(vantiro_printStatistics(1), VANTIRO_ERROR_NOT_INITIALIZED);
    EXPECT_EQ(vantiro_peach_handle(), VANTIRO_ERROR_NOT_INITIALIZED);
    int index = 3;
    unsigned int size = 5;
    EXPECT_EQ(vantiro_getResultFiles(1, &index, nullptr, &size), VANTIRO_ERROR_NOT_INITIALIZED);
    EXPECT_EQ(index, 3);
    EXPECT_EQ(size, 5u);
    EXPECT_EQ(fake::trace(), "");
    variable = value;
  };
  expect_refusal(sgc);
  expect_refusal(cls);
  expect_refusal(env);
  EXPECT_EQ(vantiro_open(), VANTIRO_OK);
}

TEST_F(Forwarding, LeavesAFailedLookUpPendingForTheNextCall) {
  fake::lacks("ManagementImpl.createJob");
  EXPECT_EQ(vantiro_createJob2(1, 2, nullptr), VANTIRO_ERROR_METHOD_NOT_FOUND);
  EXPECT_EQ(fake::trace(), lines({"AttachCurrentThread",
                                  "GetMethodID ManagementImpl createJob (I[Ljava/lang/String;)I"}));
  EXPECT_EQ(fake::pending(), "no method createJob");
  fake::returns("open", 3);
  EXPECT_EQ(vantiro_open(), 3);
  EXPECT_EQ(fake::pending(), "");
}

// The one management call that leaves nothing pending.
TEST_F(Forwarding, ClearsBeforeTheTestForPrintedStatistics) {
  EXPECT_EQ(reached(vantiro_printStatistics(4)), "CallVoidMethod printStatistics 4\n");
  fake::lacks("ManagementImpl.printStatistics");
  EXPECT_EQ(vantiro_printStatistics(4), VANTIRO_ERROR_METHOD_NOT_FOUND);
  EXPECT_EQ(fake::pending(), "");
}

TEST_F(Forwarding, DescribesAndClearsWhatJavaThrows) {
  fake::throws("open");
  testing::internal::CaptureStderr();
  EXPECT_EQ(vantiro_open(), VANTIRO_ERROR_UNCAUGHT_EXCEPTION);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "Exception: open threw\n");
  EXPECT_EQ(fake::trace(), lines({"AttachCurrentThread", "GetMethodID ManagementImpl open ()I",
                                  "ExceptionClear", "CallIntMethod open", "ExceptionOccurred",
                                  "ExceptionDescribe", "ExceptionClear"}));
  EXPECT_EQ(vantiro_close(1), VANTIRO_OK);
}

TEST_F(Forwarding, WorksInAnyThread) {
  fake::returns("getLastError", 6);
  std::thread([] { EXPECT_EQ(vantiro_getLastError(5), 6); }).join();
  EXPECT_EQ(fake::trace("Call"), "CallIntMethod getLastError 5\n");
}

}  // namespace
