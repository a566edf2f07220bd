// The life of one job: one process to start, feed and wait for, and all others to end with it.

#include <errno.h>
#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <string.h>
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
  // Whose end is the program's on this side; a launcher's may be another on the far side.
  pid_t keeper;
  pid_t main;
  int signals;
  bool ended;
  // As wait gives it.
  int status;
  struct usage usage;
  // EXITED until there is a reason to end the job.
  enum ending ending;
  // Where input comes from, and the pipe that takes it to the job.
  int source;
  int sink;
  char buffer[4096];
  size_t begin, end;
};

static void stop(struct run *run) {
  if (run->ending == EXITED) run->ending = STOPPED;
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
  // Whoever hands input on does so while the program is alive, and ends it when it is gone.
  if (length == 0 || (length < 0 && errno != EINTR && errno != EAGAIN)) stop(run);
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
      run->ended |= children_reap(run->main, &run->status, &run->usage);
    } else if (number == SIGTERM || number == SIGHUP || number == SIGINT) {
      stop(run);
    } else if (number == SIGCONT && !run->far && getppid() != run->keeper) {
      stop(run);
    }
  }
}

static void wait_for_something(struct run *run, int64_t until) {
  bool full = run->begin < run->end;
  struct pollfd files[] = {
      {.fd = run->signals, .events = POLLIN},
      // Also while there is no room for more, the end of the input is heard of.
      {.fd = run->source, .events = full ? 0 : POLLIN},
      {.fd = full ? run->sink : -1, .events = POLLOUT},
  };
  if (poll(files, 3, poll_timeout(until, now_ms())) <= 0) return;
  if (files[0].revents) heed_signals(run);
  if (files[1].revents && full) stop(run);
  if (files[1].revents && !full) fill(run);
  if (files[2].revents) drain(run);
}

static void await_end(struct run *run) {
  const int64_t end = time_after(now_ms(), run->job->grace_ms);
  for (int64_t now; !run->ended && (now = now_ms()) < end;) {
    struct pollfd file = {.fd = run->signals, .events = POLLIN};
    poll(&file, 1, poll_timeout(end, now));
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
  const int64_t end = time_after(now_ms(), run->job->grace_ms);
  while (cancel > 0 && now_ms() < end) {
    if (waitpid(cancel, NULL, WNOHANG) != 0) return;
    nanosleep(&pause, NULL);
  }
}

static struct outcome own_outcome(const struct run *run) {
  const int signal = WIFSIGNALED(run->status) ? WTERMSIG(run->status) : 0;
  return (struct outcome){.ending = run->ending,
                          .status = signal ? 128 + signal : WEXITSTATUS(run->status),
                          .signal = signal,
                          .cpu_ms = run->usage.cpu_ms,
                          .peak_kb = run->usage.peak_kb};
}

// A launcher that is killed hard leaves its job running or queued: it is asked first, and its
// engine is told. What the job's own side says counts, whatever the launcher's status.
static struct outcome end_launcher(struct run *run) {
  struct outcome outcome;
  if (!run->ended && word_ended(run->job, &outcome)) await_end(run);
  if (!run->ended) {
    kill(run->main, SIGTERM);
    await_end(run);
  }
  if (*run->job->cancel && (!run->ended || !word_ended(run->job, &outcome))) {
    run_cancel(run);
    await_end(run);
  }
  children_kill(&run->usage);
  if (word_ended(run->job, &outcome)) return outcome;
  outcome = own_outcome(run);
  if (outcome.ending == EXITED) outcome.ending = LOST;
  // What the launcher itself used is not the job's.
  outcome.cpu_ms = outcome.peak_kb = 0;
  return outcome;
}

static struct outcome failed(void) {
  return (struct outcome){.ending = FAILED, .status = errno, .why = strerror(errno)};
}

struct outcome supervise(const struct job *job, const struct message *description, bool far,
                         int input, void (*tell)(const struct answer *answer)) {
  const bool launch = !far && *job->launcher;
  struct run run = {
      .job = job, .far = far, .launch = launch, .keeper = getppid(), .source = input, .sink = -1};
  prctl(PR_SET_CHILD_SUBREAPER, 1);
  run.signals = signals_open();
  if (run.signals < 0 || (launch && !word_create(job, description)) || !start(&run)) {
    return failed();
  }
  const int64_t begin = now_ms();
  struct answer started;
  answer_begin(&started, "started");
  answer_number(&started, "job", job->id);
  answer_end(&started);
  bool begun = !launch;
  if (begun) tell(&started);
  // A launcher may also hang when its job has ended.
  bool told = false;
  struct outcome outcome;
  const int64_t limit = job->timeout_ms > 0 && !launch ? time_after(begin, job->timeout_ms) : NEVER;
  while (!run.ended && run.ending == EXITED && !told) {
    const int64_t pause = begun ? END_PAUSE_MS : START_PAUSE_MS;
    wait_for_something(&run, launch ? time_after(now_ms(), pause) : limit);
    if (!begun && word_started(job)) {
      begun = true;
      tell(&started);
    }
    told = launch && begun && word_ended(job, &outcome);
    if (!run.ended && run.ending == EXITED && now_ms() >= limit) run.ending = TIMED_OUT;
  }
  if (launch) return end_launcher(&run);
  children_kill(&run.usage);
  outcome = own_outcome(&run);
  outcome.wall_ms = now_ms() - begin;
  return outcome;
}
