// A Java heap with hardly any room left.
#include "calls.h"
#include "initialized_java.h"

namespace {

using FullHeap = InitializedJava;

// Each text is larger than the room that is left. HotSpot runs the method all the same, with null
// for what could not be made, and the status tells.
TEST_F(FullHeap, FailsOneCallAndNotTheNext) {
  const std::string large(1 << 23, 'x');
  const char *list[] = {"a", large.c_str()};
  std::vector<const char *> long_list(1 << 21, "");
  recorder.fill_heap(true);
  EXPECT_EQ(vantiro_setLogLevel(large.c_str()), VANTIRO_ERROR_UNCAUGHT_EXCEPTION);
  EXPECT_EQ(vantiro_peach_setName(1, large.c_str()), VANTIRO_ERROR_UNCAUGHT_EXCEPTION);
  EXPECT_EQ(vantiro_peach_addJobFile3(1, 2, list), VANTIRO_ERROR_UNCAUGHT_EXCEPTION);
  EXPECT_EQ(vantiro_createJob2(1, 2, list), VANTIRO_OK);
  EXPECT_EQ(vantiro_createJob2(2, 1 << 21, long_list.data()), VANTIRO_OK);
  EXPECT_EQ(vantiro_open(), VANTIRO_OK);
  recorder.fill_heap(false);
  EXPECT_EQ(recorder.take(),
            "setLogLevel(S)I null\npeach.setName(IS)V 1 null\npeach.addJobFile(IA)V 1 ['a' "
            "null]\ncreateJob(IA)I 1 ['a' null]\ncreateJob(IA)I 2 null\nopen()I");
}

}  // namespace
