// The life of one job: one process to start, feed and wait for, and all others to end with it.

#include <errno.h>
#include <fcntl.h>
#include <limits.h>
#include <poll.h>
#include <signal.h>
#include <stdio.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

#include "keeper.h"

enum { START_PAUSE_MS = 500, END_PAUSE_MS = 5000 };

struct run {
  const struct job *job;
  bool far;
  bool launch;
  pid_t main;
  int signals;
  bool ended;
  int status;
  long cpu_ms;
  // EXITED until there is a reason to end the job.
  enum ending ending;
  // Where input comes from (-1: nowhere), and the pipe that takes it to the job.
  int source;
  int sink;
  bool source_ready;
  char buffer[4096];
  size_t begin, end;
};

static int open_input(const struct run *run) {
  if (run->far) return STDIN_FILENO;
  char path[PATH_MAX];
  snprintf(path, sizeof path, "%s.input", run->job->file);
  return open(path, O_RDONLY | O_CLOEXEC);
}

static bool start(struct run *run) {
  int input[2];
  if (pipe2(input, O_CLOEXEC) != 0) return false;
  run->sink = input[1];
  fcntl(run->sink, F_SETFL, O_NONBLOCK);
  pid_t keeper = getpid();
  run->main = fork();
  if (run->main == 0) {
    job_enter(run->job, keeper, run->launch ? SIGTERM : SIGKILL);
    dup2(input[0], STDIN_FILENO);
    if (run->launch) job_exec_launcher(run->job);
    job_exec(run->job);
  }
  int failure = errno;
  close(input[0]);
  errno = failure;
  return run->main > 0;
}

// Takes what has come, when the last of it has been handed on.
static void fill(struct run *run) {
  ssize_t length = read(run->source, run->buffer, sizeof run->buffer);
  run->begin = 0;
  run->end = length > 0 ? (size_t)length : 0;
  if (length > 0 || (length < 0 && errno == EINTR)) return;
  run->source_ready = false;
  // A launcher hands on the input of a program that is alive, and its end when it is gone.
  if (run->far && run->ending == EXITED) run->ending = STOPPED;
}

static void drain(struct run *run) {
  ssize_t length =
      run->sink < 0 ? -1 : write(run->sink, run->buffer + run->begin, run->end - run->begin);
  if (length >= 0) {
    run->begin += (size_t)length;
  } else if (errno != EAGAIN && errno != EINTR) {
    // The job does not read any more; its end of input is still listened for.
    run->begin = run->end;
  }
}

static void heed_signals(struct run *run) {
  for (int number; (number = signals_next(run->signals)) != 0;) {
    if (number == SIGCHLD) {
      run->ended |= children_reap(run->main, &run->status, &run->cpu_ms);
    } else if (number == SIGUSR1) {
      if (run->source < 0) run->source = open_input(run);
      run->source_ready = run->source >= 0;
    } else if (number == SIGTERM || number == SIGHUP || number == SIGINT) {
      if (run->ending == EXITED) run->ending = STOPPED;
    }
  }
}

static void wait_for_something(struct run *run, long until) {
  bool full = run->begin < run->end;
  struct pollfd files[] = {
      {.fd = run->signals, .events = POLLIN},
      // Also while there is no room for more, the end of a launcher's input is heard of.
      {.fd = run->far || (run->source_ready && !full) ? run->source : -1,
       .events = full ? 0 : POLLIN},
      {.fd = full ? run->sink : -1, .events = POLLOUT},
  };
  long left = until - now_ms();
  int timeout = until == LONG_MAX ? -1 : left < 0 ? 0 : left > INT_MAX ? INT_MAX : (int)left;
  if (poll(files, 3, timeout) <= 0) return;
  if (files[0].revents) heed_signals(run);
  if (files[1].revents && full) run->ending = STOPPED;
  if (files[1].revents && !full) fill(run);
  if (files[2].revents) drain(run);
}

static void await_end(struct run *run, long limit_ms) {
  for (long end = now_ms() + limit_ms; !run->ended && now_ms() < end;) {
    struct pollfd file = {.fd = run->signals, .events = POLLIN};
    poll(&file, 1, (int)(end - now_ms()) + 1);
    heed_signals(run);
  }
}

static void run_cancel(const struct run *run) {
  pid_t keeper = getpid();
  pid_t cancel = fork();
  if (cancel == 0) {
    job_enter(run->job, keeper, SIGKILL);
    job_exec_cancel(run->job);
  }
  const struct timespec pause = {0, 10000000L};
  for (long end = now_ms() + run->job->grace_s * 1000; cancel > 0 && now_ms() < end;) {
    if (waitpid(cancel, NULL, WNOHANG) != 0) return;
    nanosleep(&pause, NULL);
  }
}

// A launcher that is killed hard leaves its job running or queued: it is asked first, and its
// engine is told. What the job's own side says counts, whatever the launcher's status.
static struct outcome end_launcher(struct run *run) {
  struct outcome outcome = {0};
  if (!run->ended && word_ended(run->job, &outcome)) await_end(run, run->job->grace_s * 1000);
  if (!run->ended) {
    kill(run->main, SIGTERM);
    await_end(run, run->job->grace_s * 1000);
  }
  if (*run->job->cancel && (!run->ended || !word_ended(run->job, &outcome))) {
    run_cancel(run);
    await_end(run, run->job->grace_s * 1000);
  }
  children_kill(&run->cpu_ms);
  if (!word_ended(run->job, &outcome)) {
    outcome.ending = run->ending == EXITED ? LOST : run->ending;
    outcome.status = run->status;
  }
  return outcome;
}

static struct outcome end_job(struct run *run) {
  children_kill(&run->cpu_ms);
  return (struct outcome){run->ending, run->status, run->cpu_ms};
}

struct outcome supervise(const struct job *job, bool far, void (*on_started)(void)) {
  bool launch = !far && *job->launcher;
  struct run run = {.job = job, .far = far, .launch = launch, .sink = -1};
  prctl(PR_SET_CHILD_SUBREAPER, 1);
  run.signals = signals_open();
  run.source = open_input(&run);
  run.source_ready = run.source >= 0;
  if (run.signals < 0 || (launch && !word_create(job)) || !start(&run)) {
    return (struct outcome){.ending = FAILED, .status = errno};
  }
  bool started = !launch;
  if (started) on_started();
  // A launcher may also hang when its job has ended.
  bool told = false;
  struct outcome outcome;
  long limit = job->timeout_s > 0 && !launch ? now_ms() + job->timeout_s * 1000 : LONG_MAX;
  while (!run.ended && run.ending == EXITED && !told) {
    long pause = started ? END_PAUSE_MS : START_PAUSE_MS;
    wait_for_something(&run, launch ? now_ms() + pause : limit);
    if (!started && word_started(job)) {
      started = true;
      on_started();
    }
    told = launch && started && word_ended(job, &outcome);
    if (!run.ended && run.ending == EXITED && now_ms() >= limit) run.ending = TIMED_OUT;
  }
  return launch ? end_launcher(&run) : end_job(&run);
}
