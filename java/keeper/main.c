// vantiro-keeper serve LOCK         looks after the jobs of a program, which starts it
// vantiro-keeper job FILE           is what a launcher runs: the far side of one job
// vantiro-keeper continue PROCESS   wakes another child of the program up, when it was halted

#include <errno.h>
#include <fcntl.h>
#include <signal.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/prctl.h>
#include <unistd.h>

#include "keeper.h"

enum { LARGEST_FILE = 1 << 28 };

static const struct job *far_job;

static void tell(const struct answer *answer) { word_add(far_job, answer); }

// The description of a job; why not, as a text, when it cannot be had.
static const char *read_job(const char *path, struct message *message, struct job *job) {
  struct reader reader = {.limit = LARGEST_FILE};
  int file = open(path, O_RDONLY | O_CLOEXEC);
  if (file < 0) return strerror(errno);
  while (!reader_next(&reader, message)) {
    size_t size;
    char *room = reader_room(&reader, &size);
    ssize_t length = size > 0 ? read(file, room, size) : -1;
    if (length < 0) return strerror(errno);
    if (length == 0) return "it is not whole";
    reader_add(&reader, (size_t)length);
  }
  close(file);
  return job_read(message, job);
}

static int run_far(const char *path) {
  struct message message;
  struct job job;
  const char *trouble = read_job(path, &message, &job);
  if (trouble) {
    fprintf(stderr, "%s: %s\n", path, trouble);
    return 1;
  }
  if (!job_lock(job.lock)) {
    fprintf(stderr, "the program of this job is gone: %s: %s\n", job.lock, strerror(errno));
    return 1;
  }
  job.file = path;
  far_job = &job;
  struct outcome outcome = supervise(&job, &message, true, STDIN_FILENO, tell);
  struct answer answer;
  outcome_write(&answer, job.id, &outcome);
  if (!word_add(&job, &answer)) {
    perror(path);
    return 1;
  }
  return outcome.status;
}

static int wake(pid_t process) {
  // A number that has gone to somebody else by now is no brother of this process.
  if (process <= 0 || !children_has(getppid(), process)) return 1;
  return kill(process, SIGCONT) == 0 ? 0 : 1;
}

int main(int count, char **arguments) {
  // No job of an ordinary user takes the files of this process, or looks into it.
  prctl(PR_SET_DUMPABLE, 0);
  const char *verb = count == 3 ? arguments[1] : "";
  if (strcmp(verb, "serve") == 0) return serve(arguments[2]);
  if (strcmp(verb, "job") == 0) return run_far(arguments[2]);
  if (strcmp(verb, "continue") == 0) return wake((pid_t)atoi(arguments[2]));
  fprintf(
      stderr,
      "This program looks after the jobs of vantiro's local grid, which starts it by itself.\n");
  return 2;
}
