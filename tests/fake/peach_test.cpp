// The parallel-each object, calls on it, and intermediate results.
#include <thread>
#include <vector>

#include "support.h"

namespace {

using Peach = Initialized;

const std::string fetching =
    lines({"GetMethodID ManagementImpl getPeachWrapper ()Lfi/vantiro/user/PeachWrapper;",
           "ExceptionClear", "FindClass fi/vantiro/user/PeachWrapper", "NewGlobalRef PeachWrapper",
           "CallObjectMethod getPeachWrapper", "ExceptionOccurred", "NewGlobalRef PeachWrapper"});
const std::string getting = lines({"GetMethodID PeachWrapper get ()I", "ExceptionClear",
                                   "CallIntMethod get", "ExceptionOccurred"});
const std::string attaching = "AttachCurrentThread\n";

TEST_F(Peach, FetchesItsObjectOnceAndAgainAfterUnload) {
  EXPECT_EQ(vantiro_peach_execute(1), VANTIRO_ERROR_NOT_INITIALIZED);
  EXPECT_EQ(fake::trace(), "");
  fake::returns("get", 17);
  for (const auto &unload :
       {+[] { return vantiro_unload(1); }, +[] { return vantiro_unload2(1, 0); }}) {
    EXPECT_EQ(vantiro_peach_handle(), 17);
    EXPECT_EQ(fake::trace(), attaching + fetching + getting);
    EXPECT_EQ(vantiro_peach_handle(), 17);
    EXPECT_EQ(fake::trace(), attaching + getting);
    EXPECT_EQ(vantiro_peach_done(17), VANTIRO_OK);
    EXPECT_EQ(unload(), VANTIRO_OK);
    EXPECT_TRUE(!pwcls && !pwobj && sgc && cls && env && jvm);
    EXPECT_EQ(vantiro_peach_done(17), VANTIRO_ERROR_NOT_INITIALIZED);
    fake::trace();
  }
}

TEST_F(Peach, ForgetsItsObjectAlsoWhenUnloadFails) {
  vantiro_peach_handle();
  fake::lacks("ManagementImpl.unload");
  EXPECT_EQ(vantiro_unload(0), VANTIRO_ERROR_METHOD_NOT_FOUND);
  EXPECT_TRUE(!pwcls && !pwobj);

  fake::behave();
  vantiro_peach_handle();
  fake::throws("unload");
  EXPECT_EQ(vantiro_unload2(0, 1), VANTIRO_ERROR_UNCAUGHT_EXCEPTION);
  EXPECT_TRUE(!pwcls && !pwobj);

  fake::behave();
  vantiro_peach_handle();
  const auto object = sgc;
  sgc = nullptr;
  EXPECT_EQ(vantiro_unload(0), VANTIRO_ERROR_NOT_INITIALIZED);
  EXPECT_TRUE(pwcls && pwobj);
  sgc = object;
}

TEST_F(Peach, StaysAbsentWhenTheFetchFails) {
  const auto expect_absence = [](int status) {
    EXPECT_EQ(vantiro_peach_handle(), status);
    EXPECT_EQ(pwobj, nullptr);
    EXPECT_EQ(fake::pending(), "");
    EXPECT_EQ(fake::trace("CallIntMethod"), "") << "there is nothing to call";
    EXPECT_EQ(vantiro_peach_done(1), VANTIRO_ERROR_NOT_INITIALIZED);
    fake::behave();
  };
  fake::lacks("ManagementImpl.getPeachWrapper");
  expect_absence(VANTIRO_ERROR_METHOD_NOT_FOUND);
  fake::lacks("fi/vantiro/user/PeachWrapper");
  expect_absence(VANTIRO_ERROR_UNCAUGHT_EXCEPTION);
  fake::throws("getPeachWrapper");
  expect_absence(VANTIRO_ERROR_UNCAUGHT_EXCEPTION);
  fake::returns_null("getPeachWrapper");
  expect_absence(VANTIRO_ERROR_UNCAUGHT_EXCEPTION);
  fake::trace();
  EXPECT_EQ(vantiro_peach_handle(), VANTIRO_OK);
  EXPECT_EQ(fake::trace(), attaching + fetching + getting);

  fake::lacks("PeachWrapper.get");
  EXPECT_EQ(vantiro_peach_handle(), VANTIRO_ERROR_METHOD_NOT_FOUND);
  fake::behave();
  fake::throws("get");
  EXPECT_EQ(vantiro_peach_handle(), VANTIRO_ERROR_UNCAUGHT_EXCEPTION);
  EXPECT_NE(pwobj, nullptr);
}

TEST_F(Peach, ClearsThenTestsThenConverts) {
  vantiro_peach_handle();
  fake::trace();
  const std::string looking =
      lines({"AttachCurrentThread", "GetMethodID PeachWrapper addJobFile (I[Ljava/lang/String;)V",
             "ExceptionClear"});
  const std::string expected =
      looking +
      lines({"NewStringUTF \"\"", "FindClass java/lang/String", "NewObjectArray 1 String \"\"",
             "NewStringUTF \"a\"", "SetObjectArrayElement 0 \"a\"",
             "CallVoidMethod addJobFile 3 [\"a\"]", "ExceptionOccurred"});
  EXPECT_EQ(vantiro_peach_addJobFile(3, 1, "a"), VANTIRO_OK);
  EXPECT_EQ(fake::trace(), expected);
  const char *list[] = {"a"};
  EXPECT_EQ(vantiro_peach_addJobFile3(3, 1, list), VANTIRO_OK);
  EXPECT_EQ(fake::trace(), expected);

  EXPECT_EQ(vantiro_peach_addJobFileWithDir(3, "d", 2, "a", nullptr), VANTIRO_OK);
  EXPECT_EQ(fake::trace("Call"), "CallVoidMethod addJobFileWithDir 3 \"d\" [\"a\", null]\n");

  fake::lacks("PeachWrapper.addJobFile");
  EXPECT_EQ(vantiro_peach_addJobFile3(3, 1, list), VANTIRO_ERROR_METHOD_NOT_FOUND);
  EXPECT_EQ(fake::trace(), looking);
  EXPECT_EQ(fake::pending(), "");
  fake::fail("AttachCurrentThread");
  EXPECT_EQ(vantiro_peach_setName(3, "n"), VANTIRO_ERROR_NOT_INITIALIZED);
}

std::vector<std::string> results;
void keep(const char *text) { results.push_back(text); }
void keep_other(const char *text) { results.push_back("other " + std::string(text)); }

class Callback : public Peach {
 protected:
  void SetUp() override {
    Peach::SetUp();
    EXPECT_EQ(vantiro_peach_setIntermediateResultHandler(1, keep), VANTIRO_ERROR_NOT_INITIALIZED);
    EXPECT_EQ(vantiro_peach_intermediate_callback_fun, nullptr);
    vantiro_peach_handle();
    fake::trace();
  }
};

TEST_F(Callback, IsRegisteredAfterALookUpThatFailed) {
  fake::lacks("ManagementImpl.open");
  EXPECT_EQ(vantiro_open(), VANTIRO_ERROR_METHOD_NOT_FOUND);
  EXPECT_EQ(vantiro_peach_setIntermediateResultHandler(1, keep), VANTIRO_OK);
}

TEST_F(Callback, IsRegisteredAndDelivers) {
  EXPECT_EQ(vantiro_peach_setIntermediateResultHandler(1, keep), VANTIRO_OK);
  EXPECT_EQ(
      fake::trace(),
      lines({"AttachCurrentThread", "ExceptionClear",
             "FindClass fi/vantiro/user/NativeFunctionCaller",
             "GetMethodID NativeFunctionCaller <init> ()V", "NewObject NativeFunctionCaller",
             "RegisterNatives 1 NativeFunctionCaller func (Ljava/lang/String;)V",
             "ExceptionOccurred",
             "GetMethodID PeachWrapper setIntermediateResultHandler "
             "(ILfi/vantiro/user/IntermediateResultHandler;)V",
             "ExceptionClear", "CallVoidMethod setIntermediateResultHandler 1 NativeFunctionCaller",
             "ExceptionOccurred"}));
  fake::deliver("one");
  fake::deliver("");
  EXPECT_EQ(fake::trace(), lines({"GetStringUTFChars \"one\"", "ReleaseStringUTFChars \"one\"",
                                  "GetStringUTFChars \"\"", "ReleaseStringUTFChars \"\""}));
  EXPECT_EQ(vantiro_peach_setIntermediateResultHandler(2, keep_other), VANTIRO_OK);
  fake::deliver("two");
  fake::deliver(nullptr);
  fake::fail("GetStringUTFChars");
  fake::deliver("lost");
  EXPECT_EQ(fake::pending(), "") << "Java's func would seem to have thrown";
  EXPECT_EQ(vantiro_unload(1), VANTIRO_OK);
  std::thread([] { fake::deliver("three"); }).join();
  vantiro_peach_handle();
  EXPECT_EQ(vantiro_peach_setIntermediateResultHandler(2, nullptr), VANTIRO_OK);
  fake::deliver("dropped");
  EXPECT_EQ(results, (std::vector<std::string>{"one", "", "other two", "other three"}));
}

TEST_F(Callback, IsKeptWhenAnotherIsRefused) {
  ASSERT_EQ(vantiro_peach_setIntermediateResultHandler(1, keep), VANTIRO_OK);
  const auto expect_refusal = [](int status) {
    EXPECT_EQ(vantiro_peach_setIntermediateResultHandler(2, keep_other), status);
    EXPECT_EQ(vantiro_peach_intermediate_callback_fun, keep);
    fake::behave();
  };
  for (const char *function : {"FindClass", "NewObject", "RegisterNatives"}) {
    fake::fail(function);
    expect_refusal(VANTIRO_ERROR_UNCAUGHT_EXCEPTION);
    EXPECT_EQ(fake::pending(), "");
  }
  fake::throws("setIntermediateResultHandler");
  expect_refusal(VANTIRO_ERROR_UNCAUGHT_EXCEPTION);
  EXPECT_EQ(fake::pending(), "");
  fake::lacks("PeachWrapper.setIntermediateResultHandler");
  expect_refusal(VANTIRO_ERROR_METHOD_NOT_FOUND);
  EXPECT_EQ(fake::pending(), "");
  fake::lacks("NativeFunctionCaller.<init>");
  expect_refusal(VANTIRO_ERROR_METHOD_NOT_FOUND);
  EXPECT_EQ(fake::pending(), "no method <init>");
}

}  // namespace
