// The word of the job's own side: whatever a launcher says of a job, only this file is believed.

#include <fcntl.h>
#include <stdio.h>
#include <string.h>
#include <unistd.h>

#include "keeper.h"

const char *const ending_words[ENDINGS] = {"exited", "timeout", "stopped", "lost", "failed"};

static int open_word(const struct job *job, int flags) {
  char path[4096];
  snprintf(path, sizeof path, "%s.word", job->file);
  return open(path, flags | O_CLOEXEC, 0666);
}

bool word_create(const struct job *job) {
  // It is there from the start: a file that was missed once may stay unseen on a network.
  int file = open_word(job, O_WRONLY | O_CREAT | O_TRUNC);
  return file >= 0 && close(file) == 0;
}

// The file as it is now: opened anew, since that is when a network file system looks again.
static void read_word(const struct job *job, char *text, size_t size) {
  int file = open_word(job, O_RDONLY);
  ssize_t length = file >= 0 ? read(file, text, size - 1) : 0;
  text[length > 0 ? length : 0] = '\0';
  if (file >= 0) close(file);
}

bool word_started(const struct job *job) {
  char text[256];
  read_word(job, text, sizeof text);
  return strstr(text, "started\n") != NULL;
}

bool word_ended(const struct job *job, struct outcome *outcome) {
  char text[256], word[16], end;
  read_word(job, text, sizeof text);
  const char *line = strstr(text, "ended ");
  if (!line ||
      sscanf(line, "ended %15s %d %ld%c", word, &outcome->status, &outcome->cpu_ms, &end) != 4) {
    return false;
  }
  for (int i = 0; i < ENDINGS && end == '\n'; i++) {
    outcome->ending = (enum ending)i;
    if (strcmp(word, ending_words[i]) == 0) return true;
  }
  return false;
}

static bool add(const struct job *job, const char *line) {
  int file = open_word(job, O_WRONLY | O_APPEND);
  size_t length = strlen(line);
  bool written = file >= 0 && write(file, line, length) == (ssize_t)length && fsync(file) == 0;
  // What a network file system could not write it says at the latest here.
  return file >= 0 && close(file) == 0 && written;
}

bool word_add_started(const struct job *job) { return add(job, "started\n"); }

bool word_add_ended(const struct job *job, const struct outcome *outcome) {
  char line[128];
  snprintf(line, sizeof line, "ended %s %d %ld\n", ending_words[outcome->ending], outcome->status,
           outcome->cpu_ms);
  return add(job, line);
}
