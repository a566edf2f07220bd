// A Java side that has createProject and getPeachWrapper and hardly another method. A look-up that
// fails may leave its exception pending, which must not harm the next call.
#include <gtest/gtest.h>

#include "calls.h"
#include "recorder.h"

namespace {

class MissingMethods : public testing::Test {
 protected:
  // The initialiser is missing too, but the management object is there all the same.
  void SetUp() override {
    ASSERT_EQ(vantiro_init(), VANTIRO_ERROR_INITIALIZER_MISSING);
    ASSERT_EQ(vantiro_createEmptyProject(1, 2, "text"), 0);
    EXPECT_EQ(Recorder(vantiro_getJavaVM()).take(),
              "new ManagementImpl()\ncreateProject(IIS)I 1 2 'text'");
  }

  // A call with a list and a string, right behind another call.
  void expect_next_call_to_work(const std::string &behind) {
    const int result = vantiro_createProject2(4, 5, "text", THREE_IN_ARRAY);
    Recorder recorder(vantiro_getJavaVM());
    EXPECT_EQ(result, 0) << "behind " << behind;
    EXPECT_EQ(recorder.take(), "createProject(IISA)I 4 5 'text'" THREE_RECORDED)
        << "behind " << behind;
  }

  void expect_missing(const std::vector<Call> &calls) {
    for (const Call &call : calls) {
      if (std::string(call.record).starts_with("createProject(")) continue;
      Places out;
      EXPECT_EQ(call.make(out), VANTIRO_ERROR_METHOD_NOT_FOUND) << call;
      EXPECT_TRUE(out.untouched()) << call;
      expect_next_call_to_work(call.text);
    }
  }
};

TEST_F(MissingMethods, OfTheManagementObjectAreReported) { expect_missing(management_calls()); }

TEST_F(MissingMethods, OfTheParallelEachObjectAreReported) {
  ASSERT_EQ(vantiro_peach_handle(), 0);
  Recorder(vantiro_getJavaVM()).take();
  expect_missing(peach_calls());
}

TEST_F(MissingMethods, TeardownForgetsTheParallelEachObjectAllTheSame) {
  ASSERT_EQ(vantiro_peach_handle(), 0);
  ASSERT_TRUE(pwcls && pwobj);
  EXPECT_EQ(vantiro_unload(0), VANTIRO_ERROR_METHOD_NOT_FOUND);
  EXPECT_FALSE(pwcls || pwobj);
}

// These clear what their look-up left behind, so the thread's owner finds nothing pending.
TEST_F(MissingMethods, LeaveNothingPendingWhereThatIsPromised) {
  ASSERT_EQ(vantiro_peach_handle(), 0);
  JNIEnv *const jni = Recorder(vantiro_getJavaVM()).jni();
  EXPECT_EQ(vantiro_printStatistics(1), VANTIRO_ERROR_METHOD_NOT_FOUND);
  EXPECT_FALSE(jni->ExceptionCheck());
  for (const Call &call : peach_calls()) {
    Places out;
    call.make(out);
    EXPECT_FALSE(jni->ExceptionCheck()) << call;
  }
  EXPECT_EQ(vantiro_getPluginClass("name"), nullptr);
}

}  // namespace
