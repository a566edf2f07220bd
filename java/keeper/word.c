// The word of the job's own side: whatever a launcher says of a job, only this file is believed. It
// holds the messages that a supervisor on this side would send.

#include <fcntl.h>
#include <stdio.h>
#include <string.h>
#include <unistd.h>

#include "keeper.h"

static int open_beside(const struct job *job, const char *suffix, int flags) {
  char path[PATH_MAX];
  snprintf(path, sizeof path, "%s%s", job->file, suffix);
  return open(path, flags | O_CLOEXEC, 0600);
}

static bool write_whole(int file, const char *bytes, size_t size) {
  while (size > 0) {
    const ssize_t length = write(file, bytes, size);
    if (length <= 0) return false;
    bytes += length;
    size -= (size_t)length;
  }
  return true;
}

bool word_create(const struct job *job, const struct message *description) {
  int file = open_beside(job, "", O_WRONLY | O_CREAT | O_TRUNC);
  bool written = file >= 0 && write_whole(file, "\0", 2) &&
                 write_whole(file, description->fields, description->length) &&
                 write_whole(file, "", 1);
  // What a network file system could not write it says at the latest here.
  if (file >= 0) written = close(file) == 0 && written;
  // It is there from the start: a file that was missed once may stay unseen on a network.
  int word = written ? open_beside(job, ".word", O_WRONLY | O_CREAT | O_TRUNC) : -1;
  return word >= 0 && close(word) == 0;
}

// Looks for a message of that kind in the file as it is now: opened anew, since that is when a
// network file system looks again.
static bool find(const struct job *job, const char *kind, struct outcome *outcome) {
  int file = open_beside(job, ".word", O_RDONLY);
  if (file < 0) return false;
  char text[4 * PIPE_BUF];
  const ssize_t length = read(file, text, sizeof text);
  close(file);
  struct reader reader = {.bytes = text,
                          .limit = sizeof text,
                          .capacity = sizeof text,
                          .end = length > 0 ? (size_t)length : 0};
  struct message message;
  while (reader_next(&reader, &message)) {
    int64_t id;
    if (!message_is(&message, kind) || !message_number(&message, "job", &id) || id != job->id) {
      continue;
    }
    if (!outcome || outcome_read(&message, job->id, outcome)) return true;
  }
  return false;
}

bool word_started(const struct job *job) { return find(job, "started", NULL); }

bool word_ended(const struct job *job, struct outcome *outcome) {
  return find(job, "ended", outcome);
}

bool word_add(const struct job *job, const struct answer *answer) {
  int file = open_beside(job, ".word", O_WRONLY | O_APPEND);
  const bool written = file >= 0 &&
                       write(file, answer->bytes, answer->length) == (ssize_t)answer->length &&
                       fsync(file) == 0;
  return file >= 0 && close(file) == 0 && written;
}
