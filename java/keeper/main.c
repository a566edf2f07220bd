// vantiro-keeper serve PROGRAM LOCK    looks after the jobs of a program, which starts it
// vantiro-keeper job FILE              is what a launcher runs: the far side of one job

#include <errno.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "keeper.h"

static const struct job *far_job;

static void tell_started(void) { word_add_started(far_job); }

static int run_far(const char *file) {
  struct job job;
  if (!job_read(file, &job)) {
    perror(file);
    return 1;
  }
  if (!job_lock(job.lock)) {
    fprintf(stderr, "the program of this job is gone: %s: %s\n", job.lock, strerror(errno));
    return 1;
  }
  far_job = &job;
  struct outcome outcome = supervise(&job, true, tell_started);
  if (!word_add_ended(&job, &outcome)) {
    perror(file);
    return 1;
  }
  return outcome.status;
}

int main(int count, char **arguments) {
  if (count == 4 && strcmp(arguments[1], "serve") == 0) {
    return serve((pid_t)strtol(arguments[2], NULL, 10), arguments[3]);
  }
  if (count == 3 && strcmp(arguments[1], "job") == 0) return run_far(arguments[2]);
  fprintf(
      stderr,
      "This program looks after the jobs of vantiro's local grid, which starts it by itself.\n");
  return 2;
}
