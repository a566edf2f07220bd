// Messages between a program and its keeper, as docs/keeper.md describes them: fields "name=value",
// each ended by a NUL, the message by one more. The first two are the version and the kind.
#ifndef VANTIRO_MESSAGE_H
#define VANTIRO_MESSAGE_H

#include <limits.h>
#include <stdbool.h>
#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

#define MESSAGE_VERSION "1"

// The fields of a message that was read; they lie in its reader until that is used again.
struct message {
  const char *fields;
  size_t length;
  // It was longer than its reader takes; only the first fields are there.
  bool cut;
};

// The field after one, the first after NULL; NULL when there are no more.
const char *message_next(const struct message *message, const char *field);
// The value of a field of that name, else NULL.
const char *field_value(const char *field, const char *name);
// That of the first field of that name.
const char *message_value(const struct message *message, const char *name);
// False when there is no such field, or it is no number of 64 bits.
bool message_number(const struct message *message, const char *name, int64_t *number);
bool message_is(const struct message *message, const char *kind);
// Why it cannot be used; NULL when it is well formed and of this version.
const char *message_trouble(const struct message *message);

// Takes bytes as they come, and gives messages as they are whole. Starts as zeros and a limit.
struct reader {
  size_t limit;
  char *bytes;
  size_t begin, end, capacity;
  // Up to there no message ends.
  size_t scanned;
  // How much of a message that is too long is kept; 0 for all.
  size_t kept;
};

// Where the next bytes go, and how many: never 0 unless there is no memory at all.
char *reader_room(struct reader *reader, size_t *size);
void reader_add(struct reader *reader, size_t size);
bool reader_next(struct reader *reader, struct message *message);

// A message to be sent, short enough to pass a pipe in one piece; a text that is too long for that
// is cut.
struct answer {
  size_t length;
  char bytes[PIPE_BUF];
};

void answer_begin(struct answer *answer, const char *kind);
void answer_text(struct answer *answer, const char *name, const char *value);
void answer_number(struct answer *answer, const char *name, int64_t value);
void answer_end(struct answer *answer);

#ifdef __cplusplus
}
#endif

#endif
