// How a job ended, as a message.

#include <string.h>

#include "keeper.h"

static const char *const words[ENDINGS] = {"exited", "timeout", "stopped",
                                           "lost",   "unkept",  "failed"};

void outcome_write(struct answer *answer, int64_t id, const struct outcome *outcome) {
  answer_begin(answer, "ended");
  answer_number(answer, "job", id);
  answer_text(answer, "ending", words[outcome->ending]);
  answer_number(answer, "status", outcome->status);
  answer_number(answer, "signal", outcome->signal);
  answer_number(answer, "cpu_ms", outcome->cpu_ms);
  answer_number(answer, "wall_ms", outcome->wall_ms);
  answer_number(answer, "peak_kb", outcome->peak_kb);
  answer_text(answer, "why", outcome->why ? outcome->why : "");
  answer_end(answer);
}

bool outcome_read(const struct message *message, int64_t id, struct outcome *outcome) {
  int64_t job, status, signal;
  const char *ending = message_value(message, "ending");
  if (message_trouble(message) || !message_is(message, "ended") ||
      !message_number(message, "job", &job) || job != id || !ending ||
      !message_number(message, "status", &status) || !message_number(message, "signal", &signal) ||
      !message_number(message, "cpu_ms", &outcome->cpu_ms) ||
      !message_number(message, "wall_ms", &outcome->wall_ms) ||
      !message_number(message, "peak_kb", &outcome->peak_kb)) {
    return false;
  }
  outcome->status = (int)status;
  outcome->signal = (int)signal;
  // The text of the message does not last.
  outcome->why = strcmp(ending, words[FAILED]) == 0 ? strerror(outcome->status) : "";
  for (int i = 0; i < ENDINGS; i++) {
    outcome->ending = (enum ending)i;
    if (strcmp(ending, words[i]) == 0) return true;
  }
  return false;
}
