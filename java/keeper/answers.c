#include "answers.h"

#include <errno.h>
#include <fcntl.h>
#include <string.h>
#include <unistd.h>

#include "queue.h"

static int program = -1;
// Each with its length before it.
static struct queue waiting;

void answers_open(int pipe) {
  program = pipe;
  fcntl(pipe, F_SETFL, O_NONBLOCK);
}

// Messages of no more than PIPE_BUF bytes arrive in one piece; false when there is no room for one.
static bool hand_over(const char *bytes, size_t length) {
  return write(program, bytes, length) >= 0 || (errno != EAGAIN && errno != EINTR);
}

void answers_send(const struct answer *answer) {
  if (!answers_wait() && hand_over(answer->bytes, answer->length)) return;
  const size_t before = waiting.end - waiting.begin;
  if (!queue_add(&waiting, &answer->length, sizeof answer->length) ||
      !queue_add(&waiting, answer->bytes, answer->length)) {
    // One that has lost its text is none.
    waiting.end = waiting.begin + before;
  }
}

bool answers_wait(void) { return !queue_is_empty(&waiting); }

void answers_flush(void) {
  size_t length;
  while (answers_wait()) {
    memcpy(&length, waiting.bytes + waiting.begin, sizeof length);
    if (!hand_over(waiting.bytes + waiting.begin + sizeof length, length)) return;
    waiting.begin += sizeof length + length;
  }
  queue_free(&waiting);
}
