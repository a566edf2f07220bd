#ifndef VANTIRO_CLOCK_H
#define VANTIRO_CLOCK_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

#define NEVER INT64_MAX

int64_t now_ms(void);
// The time so much later; NEVER when there is no such time.
int64_t time_after(int64_t time_ms, int64_t pause_ms);
// What poll is given to wait until then; it may come back earlier.
int poll_timeout(int64_t until_ms, int64_t now);

#ifdef __cplusplus
}
#endif

#endif
