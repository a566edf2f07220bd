// What most tests start from: an initialised library and the first handle of a parallel-each run.
#pragma once

#include <gtest/gtest.h>
#include <vantiro.h>

#include "recorder.h"

class InitializedJava : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(vantiro_init(), 0);
    ASSERT_EQ(vantiro_peach_handle(), 0);
    recorder = Recorder(vantiro_getJavaVM());
    recorder.take();
  }
  Recorder recorder{nullptr};
};
