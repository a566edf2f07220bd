// A job as its program describes it, and what becomes it.

#include <errno.h>
#include <fcntl.h>
#include <limits.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/prctl.h>
#include <unistd.h>

#include "keeper.h"

static const char *text_of(const struct message *message, const char *name) {
  const char *text = message_value(message, name);
  return text ? text : "";
}

// The values of all fields of that name, ended by NULL; NULL without memory.
static char **list_of(const struct message *message, const char *name) {
  size_t count = 0;
  for (const char *field = NULL; (field = message_next(message, field));) {
    count += field_value(field, name) != NULL;
  }
  char **list = calloc(count + 1, sizeof *list);
  size_t position = 0;
  for (const char *field = NULL; list && (field = message_next(message, field));) {
    const char *value = field_value(field, name);
    if (value) list[position++] = (char *)value;
  }
  return list;
}

const char *job_read(const struct message *message, struct job *job) {
  *job = (struct job){.directory = text_of(message, "directory"),
                      .launcher = text_of(message, "launcher"),
                      .cancel = text_of(message, "cancel"),
                      .file = text_of(message, "file"),
                      .keeper = text_of(message, "keeper"),
                      .lock = text_of(message, "lock")};
  const char *trouble = message_trouble(message);
  if (trouble) return trouble;
  if (!message_is(message, "run") || !message_number(message, "job", &job->id) ||
      !message_number(message, "timeout_ms", &job->timeout_ms) ||
      (*job->launcher && !message_number(message, "grace_ms", &job->grace_ms)) ||
      !*job->directory) {
    return "it does not describe a job";
  }
  job->environment = list_of(message, "variable");
  job->command = list_of(message, "argument");
  if (!job->environment || !job->command) return strerror(ENOMEM);
  return *job->command ? NULL : "it has no command";
}

bool job_lock(const char *lock) {
  // Closed, it would be given up: it stays open as long as the process lives.
  int descriptor = open(lock, O_RDWR | O_CLOEXEC);
  struct flock own = {.l_type = F_WRLCK, .l_whence = SEEK_SET, .l_start = 0, .l_len = 1};
  struct flock second = {.l_type = F_RDLCK, .l_whence = SEEK_SET, .l_start = 1, .l_len = 1};
  if (descriptor < 0 || fcntl(descriptor, F_SETLK, &second) != 0 ||
      fcntl(descriptor, F_GETLK, &own) != 0) {
    return false;
  }
  errno = EOWNERDEAD;
  return own.l_type != F_UNLCK;
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
