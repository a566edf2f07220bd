// The life of the management object and of the parallel-each object, and many threads.
#include <atomic>
#include <thread>
#include <vector>

#include "calls.h"
#include "initialized_java.h"

namespace {

using State = InitializedJava;

// The thread ends properly, so every local reference that it had is gone.
template <typename Action>
void in_another_thread(Action action) {
  std::thread([&] {
    action();
    vantiro_getJavaVM()->DetachCurrentThread();
  }).join();
}

TEST_F(State, EachInitializerMakesANewObjectAndReturnsItsResult) {
  JavaVM *const machine = jvm;
  const jclass type = cls;
  for (const int result : {0, 1, -14, 1 << 31}) {
    recorder.answer(result);
    const jobject before = sgc;
    EXPECT_EQ(vantiro_initFile("ä.conf"), result);
    EXPECT_FALSE(recorder.jni()->IsSameObject(sgc, before));
    EXPECT_EQ(recorder.take(), "new ManagementImpl()\ninitFile(S)I '<e4>.conf'");
  }
  recorder.answer(7);
  EXPECT_EQ(vantiro_init(), 7);
  EXPECT_EQ(vantiro_initFileWithPassword("file", "password"), 7);
  EXPECT_EQ(vantiro_initWithoutFile("1", "2", "3", "4", 1 << 31, "6", "7", -8, 9, "", nullptr), 7);
  EXPECT_EQ(recorder.take(),
            "new ManagementImpl()\ninitFile()I\nnew ManagementImpl()\ninitFile(SS)I 'file' "
            "'password'\nnew ManagementImpl()\ninit(SSSSISSIISS)I '1' '2' '3' '4' -2147483648 '6' "
            "'7' -8 9 '' null");
  EXPECT_TRUE(jvm == machine && cls == type);
}

TEST_F(State, AnInitializerThatThrowsLeavesItsObjectBehind) {
  const jobject before = sgc;
  recorder.fail("initFile");
  EXPECT_EQ(vantiro_initFile("file"), VANTIRO_ERROR_UNCAUGHT_EXCEPTION);
  EXPECT_TRUE(sgc && !recorder.jni()->IsSameObject(sgc, before));
  recorder.fail(nullptr);
  EXPECT_EQ(vantiro_open(), 0);
  EXPECT_EQ(vantiro_init(), 0);
}

TEST_F(State, AStartOfAStartedRuntimeKeepsTheMachine) {
  JavaVM *const machine = jvm;
  JNIEnv *const jni = env;
  EXPECT_EQ(vantiro_initJava(), VANTIRO_OK);
  EXPECT_TRUE(jvm == machine && env == jni && cls && sgc);
  EXPECT_EQ(vantiro_close(5), 0);
  EXPECT_EQ(recorder.take(), "close(I)I 5");
}

TEST(StateBeforeInitialization, AThreadThatInitializesMayEnd) {
  in_another_thread([] {
    ASSERT_EQ(vantiro_init(), 0);
    ASSERT_EQ(vantiro_peach_handle(), 0);
  });
  Recorder recorder(vantiro_getJavaVM());
  recorder.take();
  EXPECT_EQ(vantiro_getLastError(5), 0);
  EXPECT_EQ(vantiro_peach_setName(6, "name"), 0);
  EXPECT_EQ(recorder.take(), "getLastError(I)I 5\npeach.setName(IS)V 6 'name'");
}

TEST_F(State, AnyThreadMayInitializeAgain) {
  JNIEnv *const mine = env;
  in_another_thread([mine] {
    EXPECT_EQ(vantiro_init(), 0);
    EXPECT_NE(vantiro_getJNIEnv(), mine);
  });
  EXPECT_EQ(vantiro_open(), 0);
  EXPECT_EQ(vantiro_init(), 0);
  EXPECT_EQ(vantiro_getJNIEnv(), mine);
}

TEST_F(State, ManyThreadsCallAtOnce) {
  recorder.answer(3, "result");
  constexpr int count = 8, times = 100;
  std::atomic<int> right = 0;
  std::vector<std::thread> threads;
  for (int i = 0; i < count; ++i) {
    threads.emplace_back([&] {
      for (int call = 0; call < times; ++call) {
        Places out;
        right += vantiro_getResultFiles(1, &out.index, OUT) == 0 && out.index == 3 &&
                 std::string(out.buffer) == "result";
        right += vantiro_createJob(1, THREE) == 3;
        right += vantiro_peach_addJobFile3(1, THREE_IN_ARRAY) == 0;
      }
      vantiro_getJavaVM()->DetachCurrentThread();
    });
  }
  for (std::thread &thread : threads) thread.join();
  EXPECT_EQ(right, 3 * count * times);

  const std::string records = recorder.take();
  int lists = 0;
  for (auto at = records.find(THREE_RECORDED); at != records.npos; ++lists) {
    at = records.find(THREE_RECORDED, at + 1);
  }
  EXPECT_EQ(lists, 2 * count * times);
}

TEST_F(State, TeardownForgetsTheParallelEachObjectOnly) {
  const jobject management = sgc;
  EXPECT_EQ(vantiro_peach_handle(), 0);
  EXPECT_EQ(recorder.take(), "peach.get()I");
  recorder.answer(-3);
  EXPECT_EQ(vantiro_unload2(1, 0), -3);
  EXPECT_FALSE(pwcls || pwobj);
  EXPECT_EQ(vantiro_peach_setName(1, ""), VANTIRO_ERROR_NOT_INITIALIZED);
  EXPECT_TRUE(jvm && env && cls && sgc == management);
  EXPECT_EQ(vantiro_getLastError(1), -3);
  EXPECT_EQ(vantiro_peach_handle(), -3);
  EXPECT_EQ(
      recorder.take(),
      "unload(ZZ)I true false\ngetLastError(I)I 1\ngetPeachWrapper()LPeachWrapper;\npeach.get()I");
  recorder.fail("unload");
  EXPECT_EQ(vantiro_unload(1), VANTIRO_ERROR_UNCAUGHT_EXCEPTION);
  EXPECT_FALSE(pwcls || pwobj);
}

TEST_F(State, AParallelEachObjectThatCannotBeHadIsAskedForAgain) {
  vantiro_unload(0);
  recorder.fail("getPeachWrapper");
  EXPECT_EQ(vantiro_peach_handle(), VANTIRO_ERROR_UNCAUGHT_EXCEPTION);
  recorder.fail(nullptr);
  recorder.answer(5, nullptr);
  EXPECT_EQ(vantiro_peach_handle(), VANTIRO_ERROR_UNCAUGHT_EXCEPTION);
  EXPECT_EQ(vantiro_peach_execute(1), VANTIRO_ERROR_NOT_INITIALIZED);
  recorder.answer(5);
  recorder.fail("get()");
  EXPECT_EQ(vantiro_peach_handle(), VANTIRO_ERROR_UNCAUGHT_EXCEPTION);
  recorder.fail(nullptr);
  EXPECT_EQ(vantiro_peach_handle(), 5);
  EXPECT_EQ(recorder.take(),
            "unload(Z)I "
            "false\ngetPeachWrapper()LPeachWrapper;\ngetPeachWrapper()LPeachWrapper;"
            "\ngetPeachWrapper()LPeachWrapper;\npeach.get()I\npeach.get()I");
}

}  // namespace
