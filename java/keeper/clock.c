// Times are milliseconds of 64 bits, also where the machine's own `long` has fewer.

#include <limits.h>
#include <time.h>

#include "clock.h"

int64_t now_ms(void) {
  struct timespec now;
  clock_gettime(CLOCK_MONOTONIC, &now);
  return (int64_t)now.tv_sec * 1000 + now.tv_nsec / 1000000;
}

int64_t time_after(int64_t time_ms, int64_t pause_ms) {
  int64_t sum;
  return __builtin_add_overflow(time_ms, pause_ms, &sum) ? NEVER : sum;
}

int poll_timeout(int64_t until_ms, int64_t now) {
  if (until_ms == NEVER) return -1;
  if (until_ms <= now) return 0;
  return until_ms - now > INT_MAX ? INT_MAX : (int)(until_ms - now);
}
