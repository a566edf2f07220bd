// Starts that go wrong, a machine that the host already runs, and the machines of the runtime. The
// library is loaded while the program runs, from the directory that the case is about.
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <vantiro/status.h>

#include <csignal>
#include <fstream>
#include <string>
#include <vector>

#include "recorder.h"

namespace {

class Library {
 public:
  explicit Library(const std::string &stage)
      : handle_(dlopen((STAGES "/" + stage + "/" SONAME).c_str(), RTLD_NOW)) {
    EXPECT_TRUE(handle_) << dlerror();
  }
  template <typename... Arguments>
  int call(const char *function, Arguments... arguments) {
    return reinterpret_cast<int (*)(Arguments...)>(dlsym(handle_, function))(arguments...);
  }
  void close() { EXPECT_EQ(dlclose(handle_), 0); }
  template <typename Pointer = void *>
  Pointer variable(const char *name) {
    return *static_cast<Pointer *>(dlsym(handle_, name));
  }

 private:
  void *handle_;
};

TEST(Start, WithoutTheJavaSideEndsItsMachine) {
  Library library("without_java_side");
  EXPECT_EQ(library.call("vantiro_initJava"), VANTIRO_ERROR_METHOD_NOT_FOUND);
  EXPECT_FALSE(library.variable("env") || library.variable("cls"));
  EXPECT_TRUE(library.variable("jvm") && library.variable("jvmlibHandle"));
  EXPECT_EQ(library.call("vantiro_open"), VANTIRO_ERROR_NOT_INITIALIZED);
  // The Java runtime does not create a second machine in a process.
  EXPECT_EQ(library.call("vantiro_init"), VANTIRO_ERROR_NOT_INITIALIZED);
}

TEST(Start, WithoutAConstructorEndsItsMachine) {
  Library library("no_constructor");
  EXPECT_EQ(library.call("vantiro_init"), VANTIRO_ERROR_CONSTRUCTOR_MISSING);
  EXPECT_FALSE(library.variable("env") || library.variable("sgc"));
  EXPECT_EQ(library.call("vantiro_init"), VANTIRO_ERROR_NOT_INITIALIZED);
}

TEST(Start, WithAConstructorThatThrowsKeepsItsMachine) {
  Library library("throwing_constructor");
  EXPECT_EQ(library.call("vantiro_init"), VANTIRO_ERROR_INITIALIZATION);
  EXPECT_TRUE(library.variable("cls"));
  EXPECT_FALSE(library.variable("sgc"));
  EXPECT_EQ(library.call("vantiro_open"), VANTIRO_ERROR_NOT_INITIALIZED);
  JNIEnv *const env = library.variable<JNIEnv *>("env");
  ASSERT_TRUE(env && env->ExceptionCheck());
  env->ExceptionClear();
  EXPECT_EQ(library.call("vantiro_init"), VANTIRO_ERROR_INITIALIZATION);
}

std::string property(Library &library, const char *key) {
  char buffer[3 * 4096] = "";
  unsigned int size = sizeof buffer;
  EXPECT_EQ(library.call("vantiro_getJavaSystemProperty", key, static_cast<char *>(buffer), &size),
            VANTIRO_OK);
  return buffer;
}

// The machine is created with the class path of the library's directory, and the calls arrive.
void expect_own_machine(const std::string &stage, const char *kind) {
  if (!std::ifstream(STAGES "/" + stage + "/VantiroDLL.conf")) GTEST_SKIP() << "no such machine";
  Library library(stage);
  ASSERT_EQ(library.call("vantiro_init"), 0);
  Recorder recorder(library.variable<JavaVM *>("jvm"));
  EXPECT_EQ(recorder.take(), "new ManagementImpl()\ninitFile()I");
  EXPECT_NE(property(library, "java.vm.name").find(kind), std::string::npos);
  const std::string folder = STAGES "/" + stage;
  EXPECT_EQ(
      property(library, "java.class.path"),
      folder + "/vantiro.jar:" + folder + "/commons-codec-1.3.jar:" + folder + "/xmlrpc-2.0.jar");
}

TEST(Start, CreatesTheServerMachine) { expect_own_machine("recording", "Server"); }

TEST(Start, CreatesTheClientMachine) { expect_own_machine("client", "Client"); }

TEST(Start, CreatesTheZeroMachine) { expect_own_machine("zero", "Zero"); }

int signals = 0;
void count_signal(int) { ++signals; }

TEST(Start, LeavesTheHandlersThatAreSetBehindIt) {
  Library library("recording");
  ASSERT_EQ(library.call("vantiro_init"), 0);
  struct sigaction mine = {};
  mine.sa_handler = count_signal;
  for (const int number : {SIGINT, SIGTERM, SIGUSR1}) {
    sigaction(number, &mine, nullptr);
    EXPECT_EQ(library.call("vantiro_init"), 0);
    EXPECT_EQ(library.call("vantiro_open"), 0);
    signals = 0;
    raise(number);
    EXPECT_EQ(signals, 1);
  }
}

// Java may still call a function of the library's.
TEST(Start, SurvivesThatTheLibraryIsClosed) {
  void (*callback)(const char *) = [](const char *) { ++signals; };
  Library library("recording");
  ASSERT_EQ(library.call("vantiro_init"), 0);
  ASSERT_EQ(library.call("vantiro_peach_handle"), 0);
  ASSERT_EQ(library.call("vantiro_peach_setIntermediateResultHandler", 1, callback), 0);
  Recorder recorder(library.variable<JavaVM *>("jvm"));
  library.close();
  recorder.deliver("text", 1, 1);
  EXPECT_EQ(signals, 1);
  Library again("recording");
  EXPECT_EQ(again.call("vantiro_open"), 0);
  EXPECT_EQ(again.call("vantiro_init"), 0);
}

class Joining : public testing::Test {
 protected:
  // The host's machine, with the archive of a stage or with nothing on its class path.
  void create_machine(const std::string &archive) {
    std::string class_path = "-Djava.class.path=" + archive;
    std::vector<JavaVMOption> options = {{class_path.data(), nullptr}};
    JavaVMInitArgs arguments = {JNI_VERSION_1_4, 1, options.data(), JNI_FALSE};
    const auto create = reinterpret_cast<decltype(&JNI_CreateJavaVM)>(
        dlsym(dlopen(JVM, RTLD_NOW), "JNI_CreateJavaVM"));
    ASSERT_EQ(create(&machine, reinterpret_cast<void **>(&jni), &arguments), JNI_OK);
  }
  // The host's machine is there, and nothing is pending that the host knows nothing of.
  void expect_machine_to_work() {
    EXPECT_FALSE(jni->ExceptionCheck());
    EXPECT_TRUE(jni->FindClass("java/util/ArrayList"));
    EXPECT_FALSE(jni->ExceptionCheck());
  }
  JavaVM *machine = nullptr;
  JNIEnv *jni = nullptr;
};

TEST_F(Joining, UsesTheClassPathOfTheHost) {
  create_machine(STAGES "/recording/vantiro.jar");
  Library library("without_java_side");
  EXPECT_EQ(library.call("vantiro_initFile", "file"), 0);
  EXPECT_EQ(library.variable("jvm"), machine);
  EXPECT_EQ(library.variable("env"), jni);
  EXPECT_EQ(library.call("vantiro_close", -5), 0);
  Recorder recorder(machine);
  EXPECT_EQ(recorder.take(), "new ManagementImpl()\ninitFile(S)I 'file'\nclose(I)I -5");
  expect_machine_to_work();
}

TEST_F(Joining, WithoutTheJavaSideLeavesTheMachineAlone) {
  create_machine("");
  Library library("recording");
  for (int attempt = 0; attempt < 2; ++attempt) {
    EXPECT_EQ(library.call("vantiro_init"), VANTIRO_ERROR_METHOD_NOT_FOUND);
    EXPECT_FALSE(library.variable("env"));
    expect_machine_to_work();
  }
}

TEST_F(Joining, WithoutAConstructorLeavesTheMachineAlone) {
  create_machine(STAGES "/no_constructor/vantiro.jar");
  Library library("recording");
  for (int attempt = 0; attempt < 2; ++attempt) {
    EXPECT_EQ(library.call("vantiro_init"), VANTIRO_ERROR_CONSTRUCTOR_MISSING);
    EXPECT_FALSE(library.variable("env"));
    expect_machine_to_work();
  }
}

}  // namespace
