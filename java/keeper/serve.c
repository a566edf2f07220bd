// The keeper of one program: a child for each job, and an eye on the program. docs/keeper.md says
// what the two tell each other.

#include <errno.h>
#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/auxv.h>
#include <sys/prctl.h>
#include <unistd.h>

#include "answers.h"
#include "keeper.h"
#include "supervisors.h"

enum { LARGEST_REQUEST = 1 << 26, ORPHANS_PAUSE_MS = 5 };

static struct reader requests = {.limit = LARGEST_REQUEST};
static bool ending;

static void refuse(const char *why) {
  struct answer answer;
  answer_begin(&answer, "refused");
  answer_text(&answer, "why", why);
  answer_end(&answer);
  answers_send(&answer);
}

static void answer_ready(const char *inherited) {
  struct answer answer;
  answer_begin(&answer, "ready");
  answer_number(&answer, "process", getpid());
  answer_text(&answer, "surroundings", inherited);
  answer_end(&answer);
  answers_send(&answer);
}

static void answer_ping(void) {
  supervisors_wake();
  struct answer answer;
  answer_begin(&answer, "pong");
  answer_end(&answer);
  answers_send(&answer);
}

static void end(void) {
  if (!ending) supervisors_stop();
  ending = true;
}

static void obey(const struct message *request) {
  int64_t id;
  const bool concerns_job = message_number(request, "job", &id);
  const char *trouble = message_trouble(request);
  if (!trouble && message_is(request, "end")) {
    end();
  } else if (!trouble && message_is(request, "ping")) {
    answer_ping();
  } else if (message_is(request, "run") && concerns_job) {
    if (request->cut) trouble = strerror(E2BIG);
    if (ending) trouble = "the program ends";
    supervisors_run(id, request, trouble);
  } else if (!trouble && message_is(request, "stop") && concerns_job) {
    supervisor_stop(id);
  } else if (!trouble && message_is(request, "input") && concerns_job) {
    const char *text = message_value(request, "text");
    if (text && !supervisor_input(id, text)) refuse("there is no memory for a job's input");
  } else {
    refuse(trouble ? trouble : "a request is of no known kind, or concerns no job");
  }
}

// False when the program has closed its end.
static bool read_requests(void) {
  size_t size;
  char *room = reader_room(&requests, &size);
  // Without any memory the program is asked again, when a job has ended.
  if (size == 0) return true;
  const ssize_t length = read(STDIN_FILENO, room, size);
  if (length <= 0) return length < 0 && (errno == EINTR || errno == EAGAIN);
  reader_add(&requests, (size_t)length);
  struct message request;
  while (reader_next(&requests, &request)) obey(&request);
  return true;
}

static void wait_for_something(int signals, bool orphans) {
  struct pollfd own[] = {{.fd = signals, .events = POLLIN},
                         {.fd = ending ? -1 : STDIN_FILENO, .events = POLLIN},
                         {.fd = answers_wait() ? STDOUT_FILENO : -1, .events = POLLOUT}};
  size_t count;
  struct pollfd *files = supervisors_poll(own, 3, &count);
  // Without memory for the list all are looked at, whether something came or not.
  poll(files ? files : own, files ? count : 3, orphans || !files ? ORPHANS_PAUSE_MS : -1);
  const struct pollfd *heard = files ? files : own;
  if (heard[2].revents) answers_flush();
  supervisors_hear(files ? files + 3 : NULL);
  if (heard[1].revents && !read_requests()) end();
}

static const char *obstacle(const char *lock, char *inherited, size_t size) {
  if (getauxval(AT_SECURE)) return "this program has the rights of somebody else than its caller";
  const char *trouble = surroundings_trouble();
  if (trouble) return trouble;
  if (!surroundings(inherited, size)) return strerror(errno);
  static char text[PATH_MAX + 200];
  if (job_lock(lock)) return NULL;
  snprintf(text, sizeof text, "%s: %s", lock, strerror(errno));
  return text;
}

int serve(const char *lock) {
  const pid_t program = getppid();
  answers_open(STDOUT_FILENO);
  // Whatever else may read there, this process never waits for it.
  fcntl(STDIN_FILENO, F_SETFL, O_NONBLOCK);
  // What is halted with the program's jobs goes on to see the program's end.
  prctl(PR_SET_PDEATHSIG, SIGCONT);
  char inherited[256];
  const char *trouble = obstacle(lock, inherited, sizeof inherited);
  if (trouble) {
    refuse(trouble);
    return 1;
  }
  // Apart from the program's terminal: what is typed there is the program's to answer.
  setsid();
  const int signals = signals_open();
  prctl(PR_SET_CHILD_SUBREAPER, 1);
  answer_ready(inherited);
  bool orphans = false;
  // A program that asks for the end may not wait for what a killed supervisor left.
  while (!ending || supervisors_count() > 0 || orphans) {
    wait_for_something(signals, orphans);
    // A thread of the program that ends sends the same signal as the program; the parent tells.
    for (int number; (number = signals_next(signals)) != 0;) {
      if (number == SIGTERM || number == SIGINT) end();
    }
    if (getppid() != program) end();
    orphans |= supervisors_reap();
    if (orphans) orphans = children_kill_once(supervisor_is) > 0;
  }
  answers_flush();
  return 0;
}
