// The keeper of one program: a child for each job, and an eye on the program.
//
// Requests and answers are texts that end with a NUL: "run ID FILE", "stop ID", "input ID"; first
// of all "0 ready", then "ID started", "ID ended WORD STATUS CPU_MS WHY". The processes of the jobs
// answer for themselves.

#include <errno.h>
#include <fcntl.h>
#include <limits.h>
#include <poll.h>
#include <signal.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include "keeper.h"

enum { ORPHANS_PAUSE_MS = 5 };

struct child {
  long id;
  pid_t process;
};

static struct child *children;
static size_t child_count, child_capacity;

static long own_id;

static void answer(long id, const char *text) {
  char line[512];
  int length = snprintf(line, sizeof line, "%ld %s", id, text);
  // Short enough to arrive whole among the answers of others.
  if (write(STDOUT_FILENO, line, (size_t)length + 1) < 0) return;
}

static void answer_ended(long id, const struct outcome *outcome, const char *why) {
  char text[256];
  snprintf(text, sizeof text, "ended %s %d %ld %s", ending_words[outcome->ending], outcome->status,
           outcome->cpu_ms, why);
  answer(id, text);
}

static void answer_failed(long id, const char *why) {
  answer_ended(id, &(struct outcome){.ending = FAILED}, why);
}

static void answer_started(void) { answer(own_id, "started"); }

static struct child *find(long id) {
  for (size_t i = 0; i < child_count; i++) {
    if (children[i].id == id) return &children[i];
  }
  return NULL;
}

static bool is_known(pid_t process) {
  for (size_t i = 0; i < child_count; i++) {
    if (children[i].process == process) return true;
  }
  return false;
}

static void __attribute__((noreturn)) become_supervisor(long id, const char *file, pid_t keeper) {
  prctl(PR_SET_PDEATHSIG, SIGTERM);
  int nothing = open("/dev/null", O_RDONLY | O_CLOEXEC);
  dup2(nothing, STDIN_FILENO);
  if (getppid() != keeper) _exit(1);
  struct job job;
  if (!job_read(file, &job)) {
    answer_failed(id, strerror(errno));
    _exit(0);
  }
  own_id = id;
  struct outcome outcome = supervise(&job, false, answer_started);
  answer_ended(id, &outcome, outcome.ending == FAILED ? strerror(outcome.status) : "");
  _exit(0);
}

static void run(long id, const char *file) {
  if (child_count == child_capacity) {
    size_t capacity = child_capacity * 2 + 16;
    struct child *more = realloc(children, capacity * sizeof *more);
    if (!more) {
      answer_failed(id, strerror(ENOMEM));
      return;
    }
    children = more;
    child_capacity = capacity;
  }
  pid_t keeper = getpid();
  pid_t process = fork();
  if (process == 0) become_supervisor(id, file, keeper);
  if (process < 0) {
    answer_failed(id, strerror(errno));
    return;
  }
  children[child_count++] = (struct child){id, process};
}

static void obey(char *request) {
  char *rest;
  const char *verb = strtok_r(request, " ", &rest);
  long id = strtol(rest, &rest, 10);
  if (!verb) return;
  if (strcmp(verb, "run") == 0) {
    run(id, rest + 1);
    return;
  }
  const struct child *child = find(id);
  if (!child) return;
  kill(child->process, strcmp(verb, "stop") == 0 ? SIGTERM : SIGUSR1);
  // A job may have halted the process that looks after it.
  kill(child->process, SIGCONT);
}

// False when the program has closed its end.
static bool read_requests(void) {
  static char text[2 * PATH_MAX];
  static size_t length;
  ssize_t got = read(STDIN_FILENO, text + length, sizeof text - length);
  if (got <= 0) return got < 0 && errno == EINTR;
  length += (size_t)got;
  char *begin = text;
  for (char *end; (end = memchr(begin, '\0', (size_t)(text + length - begin)));) {
    obey(begin);
    begin = end + 1;
  }
  length -= (size_t)(begin - text);
  memmove(text, begin, length);
  return length < sizeof text;
}

// Whether a supervisor was killed, so that what it looked after is now this process's.
static bool reap(void) {
  bool orphaned = false;
  int status;
  for (pid_t process; (process = waitpid(-1, &status, WNOHANG)) > 0;) {
    for (size_t i = 0; i < child_count; i++) {
      if (children[i].process != process) continue;
      if (status != 0) {
        orphaned = true;
        answer_failed(children[i].id, "the process that looked after it was killed");
      }
      children[i] = children[--child_count];
      break;
    }
  }
  return orphaned;
}

static void end_all(void) {
  for (size_t i = 0; i < child_count; i++) {
    kill(children[i].process, SIGTERM);
    kill(children[i].process, SIGCONT);
  }
}

int serve(pid_t program, const char *lock) {
  if (!job_lock(lock)) {
    perror(lock);
    return 1;
  }
  // Apart from the program's terminal: what is typed there is the program's to answer.
  setsid();
  int signals = signals_open();
  prctl(PR_SET_CHILD_SUBREAPER, 1);
  prctl(PR_SET_PDEATHSIG, SIGHUP);
  answer(0, "ready");
  bool orphans = false;
  // A thread of the program that ends sends the same signal as the program; the parent tells.
  bool ending = getppid() != program;
  while (!ending || child_count > 0) {
    struct pollfd files[] = {{.fd = signals, .events = POLLIN},
                             {.fd = ending ? -1 : STDIN_FILENO, .events = POLLIN}};
    poll(files, 2, orphans ? ORPHANS_PAUSE_MS : -1);
    bool gone = files[1].revents && !read_requests();
    for (int number; (number = signals_next(signals)) != 0;) {
      gone |= number == SIGTERM || number == SIGINT || getppid() != program;
    }
    orphans |= reap();
    if (orphans) orphans = children_kill_once(is_known) > 0;
    if (gone && !ending) {
      ending = true;
      end_all();
    }
  }
  return 0;
}
