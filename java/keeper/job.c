// A job as its program describes it: a file of texts, each ended by a NUL.

#include <errno.h>
#include <fcntl.h>
#include <limits.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "keeper.h"

static char *read_whole(const char *file, size_t *length) {
  int descriptor = open(file, O_RDONLY | O_CLOEXEC);
  if (descriptor < 0) return NULL;
  struct stat status;
  char *text = fstat(descriptor, &status) == 0 ? malloc((size_t)status.st_size + 1) : NULL;
  *length = 0;
  while (text && *length < (size_t)status.st_size) {
    ssize_t got = read(descriptor, text + *length, (size_t)status.st_size - *length);
    if (got <= 0) break;
    *length += (size_t)got;
  }
  close(descriptor);
  return text;
}

static char *next(char **position, char *end) {
  char *text = *position;
  char *stop = text < end ? memchr(text, '\0', (size_t)(end - text)) : NULL;
  *position = stop ? stop + 1 : end;
  return stop ? text : NULL;
}

// A list with its length before it; NULL when it is not whole.
static char **next_list(char **position, char *end) {
  const char *length = next(position, end);
  long count = length ? strtol(length, NULL, 10) : -1;
  if (count < 0 || count > end - *position) return NULL;
  char **list = calloc((size_t)count + 1, sizeof *list);
  for (long i = 0; list && i < count; i++) {
    list[i] = next(position, end);
    if (!list[i]) return NULL;
  }
  return list;
}

bool job_read(const char *file, struct job *job) {
  size_t length;
  char *position = read_whole(file, &length);
  if (!position) return false;
  char *end = position + length;
  job->file = file;
  job->directory = next(&position, end);
  const char *timeout = next(&position, end);
  job->launcher = next(&position, end);
  job->cancel = next(&position, end);
  const char *grace = next(&position, end);
  job->lock = next(&position, end);
  job->keeper = next(&position, end);
  job->environment = next_list(&position, end);
  job->command = next_list(&position, end);
  if (!job->command || !job->command[0] || !job->environment) {
    errno = EINVAL;
    return false;
  }
  job->timeout_s = strtol(timeout, NULL, 10);
  job->grace_s = strtol(grace, NULL, 10);
  return true;
}

bool job_lock(const char *lock) {
  // Closed, it would be given up: it stays open as long as the process lives.
  int descriptor = open(lock, O_RDWR | O_CLOEXEC);
  struct flock second = {.l_type = F_RDLCK, .l_whence = SEEK_SET, .l_start = 1, .l_len = 1};
  return descriptor >= 0 && fcntl(descriptor, F_SETLK, &second) == 0;
}

// A shell's statuses for a command that cannot be run, and a line that says why.
static void __attribute__((noreturn)) fail(const char *what) {
  int status = errno == ENOENT ? 127 : 126;
  dprintf(STDERR_FILENO, "%.200s: %s\n", what, strerror(errno));
  _exit(status);
}

static void redirect(const char *file, int flags, int target) {
  int descriptor = open(file, O_WRONLY | O_CREAT | O_NOFOLLOW | O_CLOEXEC | flags, 0666);
  if (descriptor < 0 || dup2(descriptor, target) < 0) fail(file);
}

void job_enter(const struct job *job, pid_t keeper, int signal_at_its_end) {
  setsid();
  prctl(PR_SET_PDEATHSIG, signal_at_its_end);
  if (getppid() != keeper) _exit(126);
  for (char **variable = job->environment; *variable; variable++) putenv(*variable);
  if (chdir(job->directory) != 0) fail(job->directory);
  signals_restore();
}

void job_exec(const struct job *job) {
  redirect("stdout", 0, STDOUT_FILENO);
  redirect("stderr", 0, STDERR_FILENO);
  execvp(job->command[0], job->command);
  fail(job->command[0]);
}

// A launcher's own words are kept apart from what the job writes.
static void redirect_to_log(const struct job *job) {
  char log[PATH_MAX];
  snprintf(log, sizeof log, "%s.launcher", job->file);
  redirect(log, O_APPEND, STDERR_FILENO);
  dup2(STDERR_FILENO, STDOUT_FILENO);
}

void job_exec_launcher(const struct job *job) {
  redirect_to_log(job);
  size_t length = strlen(job->launcher) + sizeof "exec  \"$@\"";
  char *line = malloc(length);
  if (!line) fail("launcher");
  snprintf(line, length, "exec %s \"$@\"", job->launcher);
  execl("/bin/sh", "sh", "-c", line, "sh", job->keeper, "job", job->file, (char *)NULL);
  fail("/bin/sh");
}

void job_exec_cancel(const struct job *job) {
  redirect_to_log(job);
  execl("/bin/sh", "sh", "-c", job->cancel, (char *)NULL);
  fail("/bin/sh");
}
