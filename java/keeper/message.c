#include "message.h"

#include <errno.h>
#include <inttypes.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

// Of a message that is too long so much is kept that whom it concerns can be told. Room that a
// large one took is given back.
enum { KEPT = 512, FIRST_ROOM = 4096, LARGE = 1 << 16 };

const char *message_next(const struct message *message, const char *field) {
  const char *next = field ? field + strlen(field) + 1 : message->fields;
  return next < message->fields + message->length ? next : NULL;
}

const char *field_value(const char *field, const char *name) {
  const size_t length = strlen(name);
  return strncmp(field, name, length) == 0 && field[length] == '=' ? field + length + 1 : NULL;
}

const char *message_value(const struct message *message, const char *name) {
  for (const char *field = NULL; (field = message_next(message, field));) {
    const char *value = field_value(field, name);
    if (value) return value;
  }
  return NULL;
}

bool message_number(const struct message *message, const char *name, int64_t *number) {
  const char *text = message_value(message, name);
  // What strtoll takes beyond digits is no number of the protocol.
  if (!text || strspn(text, "-0123456789") != strlen(text) || !*text) return false;
  char *end;
  errno = 0;
  *number = strtoll(text, &end, 10);
  return *end == '\0' && errno == 0;
}

bool message_is(const struct message *message, const char *kind) {
  const char *own = message_value(message, "kind");
  return own && strcmp(own, kind) == 0;
}

const char *message_trouble(const struct message *message) {
  if (message->cut) return "it is too long";
  const char *field = message_next(message, NULL);
  const char *version = field ? field_value(field, "version") : NULL;
  if (!version) return "it does not begin with a version";
  if (strcmp(version, MESSAGE_VERSION) != 0) return "it is of another version";
  field = message_next(message, field);
  if (!field || !field_value(field, "kind")) return "it does not say what kind it is";
  for (; field; field = message_next(message, field)) {
    const char *equals = strchr(field, '=');
    if (!equals || equals == field) return "it has a field without a name";
  }
  return NULL;
}

static bool grow(struct reader *reader) {
  size_t capacity = reader->capacity ? 2 * reader->capacity : FIRST_ROOM;
  if (reader->capacity >= reader->limit) return false;
  if (capacity > reader->limit) capacity = reader->limit;
  char *bytes = realloc(reader->bytes, capacity);
  if (!bytes) return false;
  reader->bytes = bytes;
  reader->capacity = capacity;
  return true;
}

// Lets go of all but the first whole fields, and of all that comes until the message ends.
static void cut(struct reader *reader) {
  if (reader->kept == 0) {
    reader->kept = reader->end < KEPT ? reader->end : KEPT;
    while (reader->kept > 0 && reader->bytes[reader->kept - 1] != '\0') reader->kept--;
    // Without even one field it is a message all the same.
    if (reader->kept == 0) reader->bytes[reader->kept++] = '\0';
  }
  // The last byte may be the first of the end.
  reader->bytes[reader->kept] = reader->bytes[reader->end - 1];
  reader->end = reader->kept + 1;
  reader->scanned = reader->kept;
}

char *reader_room(struct reader *reader, size_t *size) {
  if (reader->begin > 0) {
    reader->end -= reader->begin;
    reader->scanned -= reader->begin;
    memmove(reader->bytes, reader->bytes + reader->begin, reader->end);
    reader->begin = 0;
  }
  if (reader->end == 0 && reader->capacity > LARGE) {
    free(reader->bytes);
    *reader = (struct reader){.limit = reader->limit};
  }
  if (reader->end == reader->capacity && !grow(reader) && reader->end > KEPT) cut(reader);
  *size = reader->capacity - reader->end;
  return reader->bytes + reader->end;
}

void reader_add(struct reader *reader, size_t size) { reader->end += size; }

bool reader_next(struct reader *reader, struct message *message) {
  // Those before a message end whatever a stranger has written in between.
  while (!reader->kept && reader->begin < reader->end && reader->bytes[reader->begin] == '\0') {
    reader->begin++;
  }
  if (reader->scanned < reader->begin) reader->scanned = reader->begin;
  while (reader->scanned + 1 < reader->end) {
    char *from = reader->bytes + reader->scanned;
    char *nul = memchr(from, '\0', reader->end - reader->scanned - 1);
    if (!nul) {
      reader->scanned = reader->end - 1;
      break;
    }
    reader->scanned = (size_t)(nul - reader->bytes) + 1;
    if (nul[1] != '\0') continue;
    const size_t end = reader->kept ? reader->kept : reader->scanned;
    *message =
        (struct message){reader->bytes + reader->begin, end - reader->begin, reader->kept != 0};
    reader->begin = ++reader->scanned;
    reader->kept = 0;
    return true;
  }
  return false;
}

void answer_begin(struct answer *answer, const char *kind) {
  memset(answer->bytes, '\0', 2);
  answer->length = 2;
  answer_text(answer, "version", MESSAGE_VERSION);
  answer_text(answer, "kind", kind);
}

void answer_text(struct answer *answer, const char *name, const char *value) {
  // With the ends of the field and of the message.
  const size_t used = answer->length + strlen(name) + sizeof "=" + 1;
  if (used > sizeof answer->bytes) return;
  size_t length = strlen(value);
  if (length > sizeof answer->bytes - used) length = sizeof answer->bytes - used;
  char *field = answer->bytes + answer->length;
  answer->length += (size_t)sprintf(field, "%s=%.*s", name, (int)length, value) + 1;
}

void answer_number(struct answer *answer, const char *name, int64_t value) {
  char text[32];
  snprintf(text, sizeof text, "%" PRId64, value);
  answer_text(answer, name, text);
}

void answer_end(struct answer *answer) { answer->bytes[answer->length++] = '\0'; }
