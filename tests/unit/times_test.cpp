// Times beyond what 32 bits hold: a machine is up longer than 2^31 ms after 25 days.
#include <gtest/gtest.h>

#include <climits>

#include "clock.h"

TEST(Times, PassTwoToThe31) {
  const int64_t day25 = int64_t{1} << 31;
  EXPECT_EQ(time_after(day25 - 1, 2), day25 + 1);
  EXPECT_EQ(time_after(day25, 2147484000), day25 + 2147484000);
  EXPECT_EQ(poll_timeout(day25 + 1, day25 - 1), 2);
  EXPECT_EQ(poll_timeout(2 * day25 + 5, 2 * day25), 5);
}

TEST(Times, ThatNoClockReachesAreNever) {
  EXPECT_EQ(time_after(1, INT64_MAX), NEVER);
  EXPECT_EQ(time_after(INT64_MAX - 5, 5), NEVER);
  EXPECT_EQ(poll_timeout(NEVER, 0), -1);
}

TEST(Times, LongerThanPollTakesAreWaitedForInParts) {
  EXPECT_EQ(poll_timeout(int64_t{1} << 40, 0), INT_MAX);
  EXPECT_EQ(poll_timeout(INT_MAX, 0), INT_MAX);
  EXPECT_EQ(poll_timeout(5, 6), 0) << "in the past";
}
