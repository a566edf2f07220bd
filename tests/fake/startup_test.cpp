// Starting the machine and the management object: the order of things, and each way to fail.
#include <dlfcn.h>

#include <thread>

#include "support.h"

namespace {

using Startup = OnFakeRuntime;

const std::string jars = BUILD_DIRECTORY "/stage/";
const std::string asking =
    lines({"JNI_GetDefaultJavaVMInitArgs 10004", "JNI_GetCreatedJavaVMs 1 0"});
const std::string creating = asking + "JNI_CreateJavaVM 10004 ignoreUnrecognized=1 " +
                             "-Djava.class.path=" + jars + "vantiro.jar:" + jars +
                             "commons-codec-1.3.jar:" + jars + "xmlrpc-2.0.jar -Xmx128M " +
                             "-Dcom.sun.management.jmxremote\n";
const std::string joining = asking + lines({"AttachCurrentThread", "GetEnv 10004"});
const std::string finding = "FindClass fi/vantiro/user/ManagementImpl\n";
const std::string keeping = lines({"NewGlobalRef ManagementImpl", "AttachCurrentThread"});
const std::string constructing = lines({"GetMethodID ManagementImpl <init> ()V",
                                        "NewObject ManagementImpl", "NewGlobalRef ManagementImpl"});
const std::string initializing = lines({"GetMethodID ManagementImpl initFile ()I", "ExceptionClear",
                                        "CallIntMethod initFile", "ExceptionOccurred"});

TEST_F(Startup, CreatesAMachineAndAManagementObject) {
  EXPECT_EQ(vantiro_getJNIEnv(), nullptr);
  EXPECT_EQ(vantiro_getJavaVM(), nullptr);
  fake::returns("initFile", -3);
  EXPECT_EQ(vantiro_init(), -3);
  EXPECT_EQ(fake::trace(), creating + finding + keeping + constructing + initializing);
  EXPECT_EQ(vantiro_getJNIEnv(), env);
  EXPECT_EQ(vantiro_getJavaVM(), jvm);
  EXPECT_TRUE(env && jvm && cls && sgc && jvmlibHandle && !pwcls && !pwobj);
}

TEST_F(Startup, JoinsAMachineThatRuns) {
  fake::run_machine();
  EXPECT_EQ(vantiro_init(), VANTIRO_OK);
  EXPECT_EQ(fake::trace(), joining + finding + keeping + constructing + initializing);
}

TEST_F(Startup, InitializesAgainWithoutLookingForTheRuntime) {
  ASSERT_EQ(vantiro_init(), VANTIRO_OK);
  const auto first = sgc;
  fake::trace();
  use_runtime("none");
  fake::returns("initFile", 4);
  EXPECT_EQ(vantiro_init(), 4);
  EXPECT_EQ(fake::trace(), "AttachCurrentThread\n" + constructing + initializing);
  EXPECT_NE(sgc, first);
}

TEST_F(Startup, StartsAgainOnTheMachineThatIsThere) {
  ASSERT_EQ(vantiro_init(), VANTIRO_OK);
  const auto object = sgc;
  fake::trace();
  EXPECT_EQ(vantiro_initJava(), VANTIRO_OK);
  EXPECT_EQ(fake::trace(), "JNI_GetDefaultJavaVMInitArgs 10004\n" + finding + keeping);
  EXPECT_EQ(sgc, object);
}

TEST_F(Startup, HandsOverTheArgumentsOfEachInitializer) {
  fake::returns("init", 12);
  EXPECT_EQ(vantiro_initWithoutFile("1", "2", "3", "4", 5, "6", "7", 8, -9, "10", nullptr), 12);
  EXPECT_EQ(fake::trace("Call"),
            "CallIntMethod init \"1\" \"2\" \"3\" \"4\" 5 \"6\" \"7\" 8 -9 \"10\" null\n");
  EXPECT_EQ(vantiro_initFileWithPassword("file", "password"), VANTIRO_OK);
  EXPECT_EQ(fake::trace("Call"), "CallIntMethod initFile \"file\" \"password\"\n");
  EXPECT_EQ(vantiro_initFile("file"), VANTIRO_OK);
  EXPECT_EQ(fake::trace(), "AttachCurrentThread\n" + constructing +
                               lines({"GetMethodID ManagementImpl initFile (Ljava/lang/String;)I",
                                      "ExceptionClear", "NewStringUTF \"file\"",
                                      "CallIntMethod initFile \"file\"", "ExceptionOccurred"}));
}

TEST_F(Startup, InitializesInAnotherThread) {
  ASSERT_EQ(vantiro_init(), VANTIRO_OK);
  const auto first = env;
  std::thread([] { EXPECT_EQ(vantiro_init(), VANTIRO_OK); }).join();
  EXPECT_NE(env, first) << "the environment of the last thread that ran an initialiser";
}

// As in a program that has a variable of that name.
TEST_F(Startup, RefusesAnEnvironmentWithoutAMachine) {
  static JNIEnv_ foreign{};
  env = &foreign;
  EXPECT_EQ(vantiro_init(), VANTIRO_ERROR_NOT_INITIALIZED);
  EXPECT_EQ(vantiro_initJava(), VANTIRO_ERROR_NOT_INITIALIZED);
  unsigned int size = 0;
  EXPECT_EQ(vantiro_getJavaSystemProperty("k", nullptr, &size), VANTIRO_ERROR_NOT_INITIALIZED);
  EXPECT_EQ(env, &foreign);
}

// What the loader said, after a start that did not get so far as to call the runtime.
std::string complaint() {
  testing::internal::CaptureStdout();
  EXPECT_EQ(vantiro_init(), VANTIRO_ERROR_RUNTIME_NOT_FOUND);
  EXPECT_FALSE(env || jvm || cls || sgc);
  EXPECT_EQ(fake::trace(), "");
  return testing::internal::GetCapturedStdout();
}

TEST_F(Startup, PrintsWhyARuntimeDoesNotLoad) {
  unsetenv("JAVA_HOME");
  setenv("PATH", "", 1);
  EXPECT_EQ(complaint(), "libjvm.so: cannot open shared object file: No such file or directory\n");
  EXPECT_EQ(jvmlibHandle, nullptr);
  const char *const functions[] = {"JNI_CreateJavaVM", "JNI_GetDefaultJavaVMInitArgs",
                                   "JNI_GetCreatedJavaVMs"};
  for (int i = 0; i < 3; ++i) {
    use_runtime("broken" + std::to_string(i));
    EXPECT_EQ(complaint(), getenv("JAVA_HOME") + std::string("/" RUNTIME ": undefined symbol: ") +
                               functions[i] + "\n");
    EXPECT_NE(dlsym(jvmlibHandle, "name_of_a_runtime"), nullptr);
    EXPECT_EQ(dlsym(RTLD_DEFAULT, "name_of_a_runtime"), nullptr);
  }
  use_runtime("fake");
  EXPECT_EQ(vantiro_init(), VANTIRO_OK);
}

TEST_F(Startup, FailsWithoutAMachine) {
  fake::fail("JNI_CreateJavaVM");
  EXPECT_EQ(vantiro_init(), VANTIRO_ERROR_NOT_INITIALIZED);
  EXPECT_EQ(fake::trace(), creating);
  EXPECT_TRUE(!env && jvm && !cls && !sgc);

  fake::run_machine();
  fake::fail("GetEnv");
  EXPECT_EQ(vantiro_init(), VANTIRO_ERROR_NOT_INITIALIZED);
  EXPECT_EQ(fake::trace(), joining);
  EXPECT_TRUE(!env && jvm && !cls && !sgc);
  EXPECT_EQ(vantiro_init(), VANTIRO_OK);
}

TEST_F(Startup, DestroysItsOwnMachineWithoutTheManagementClass) {
  fake::lacks("fi/vantiro/user/ManagementImpl");
  EXPECT_EQ(vantiro_init(), VANTIRO_ERROR_METHOD_NOT_FOUND);
  EXPECT_EQ(fake::trace(), creating + finding + lines({"DetachCurrentThread", "DestroyJavaVM"}));
  EXPECT_TRUE(!env && jvm && !cls && !sgc);
  fake::behave();
  EXPECT_EQ(vantiro_init(), VANTIRO_OK);
  EXPECT_EQ(fake::trace(), creating + finding + keeping + constructing + initializing);
}

TEST_F(Startup, DestroysItsOwnMachineWithoutTheConstructor) {
  ASSERT_EQ(vantiro_init(), VANTIRO_OK);
  const auto type = cls;
  const auto object = sgc;
  fake::trace();
  fake::lacks("ManagementImpl.<init>");
  EXPECT_EQ(vantiro_init(), VANTIRO_ERROR_CONSTRUCTOR_MISSING);
  EXPECT_EQ(fake::trace(), lines({"AttachCurrentThread", "GetMethodID ManagementImpl <init> ()V",
                                  "DestroyJavaVM"}));
  EXPECT_TRUE(!env && jvm && cls == type && sgc == object);
  EXPECT_EQ(vantiro_open(), VANTIRO_ERROR_NOT_INITIALIZED);
}

TEST_F(Startup, LeavesAMachineOfTheHostAlone) {
  fake::lacks("fi/vantiro/user/ManagementImpl");
  EXPECT_EQ(vantiro_init(), VANTIRO_ERROR_METHOD_NOT_FOUND);
  EXPECT_NE(fake::trace("De"), "") << "the library's own machine, before the host has one";
  fake::run_machine();
  EXPECT_EQ(vantiro_init(), VANTIRO_ERROR_METHOD_NOT_FOUND);
  EXPECT_EQ(fake::trace("De"), "");
  EXPECT_TRUE(!env && jvm && !cls);
  EXPECT_EQ(fake::pending(), "") << "the host's thread knows nothing of the look-up";

  fake::behave();
  fake::lacks("ManagementImpl.<init>");
  EXPECT_EQ(vantiro_init(), VANTIRO_ERROR_CONSTRUCTOR_MISSING);
  EXPECT_EQ(fake::trace("De"), "");
  EXPECT_TRUE(!env && jvm && cls && !sgc);
  EXPECT_EQ(fake::pending(), "");

  fake::behave();
  EXPECT_EQ(vantiro_init(), VANTIRO_OK);
}

TEST_F(Startup, KeepsTheMachineWhenTheManagementObjectFails) {
  fake::fail("NewObject");
  EXPECT_EQ(vantiro_init(), VANTIRO_ERROR_INITIALIZATION);
  EXPECT_TRUE(env && cls && !sgc);
  EXPECT_EQ(fake::pending(), "failure of NewObject");
  EXPECT_EQ(vantiro_open(), VANTIRO_ERROR_NOT_INITIALIZED);

  fake::lacks("ManagementImpl.initFile");
  EXPECT_EQ(vantiro_init(), VANTIRO_ERROR_INITIALIZER_MISSING);
  EXPECT_TRUE(env && cls && sgc);
  EXPECT_EQ(vantiro_open(), VANTIRO_OK);

  fake::behave();
  fake::throws("initFile");
  fake::trace();
  EXPECT_EQ(vantiro_init(), VANTIRO_ERROR_UNCAUGHT_EXCEPTION);
  EXPECT_EQ(fake::trace("Exception"),
            lines({"ExceptionClear", "ExceptionOccurred", "ExceptionDescribe", "ExceptionClear"}));
  EXPECT_EQ(vantiro_open(), VANTIRO_OK);

  fake::fail("NewObject");
  EXPECT_EQ(vantiro_init(), VANTIRO_ERROR_INITIALIZATION);
  EXPECT_EQ(sgc, nullptr) << "the object of before is replaced by null";
}

}  // namespace
