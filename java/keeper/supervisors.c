#include "supervisors.h"

#include <errno.h>
#include <fcntl.h>
#include <signal.h>
#include <stdlib.h>
#include <string.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include "answers.h"
#include "queue.h"

// A supervisor has its end of the channel there, and no other of its keeper's but the errors.
enum { CHANNEL = 3, LARGEST_ANSWER = PIPE_BUF };

struct supervisor {
  int64_t job;
  pid_t process;
  // Its input goes there, and its answers come from there.
  int channel;
  struct queue input;
  struct reader answers;
  bool told_end;
};

static struct supervisor *supervisors;
static size_t count, capacity;

static struct supervisor *find(int64_t job) {
  for (size_t i = 0; i < count; i++) {
    if (supervisors[i].job == job) return &supervisors[i];
  }
  return NULL;
}

size_t supervisors_count(void) { return count; }

bool supervisor_is(pid_t process) {
  for (size_t i = 0; i < count; i++) {
    if (supervisors[i].process == process) return true;
  }
  return false;
}

static void answer_ended(int64_t job, enum ending ending, const char *why) {
  struct answer answer;
  outcome_write(&answer, job, &(struct outcome){.ending = ending, .why = why});
  answers_send(&answer);
}

static void tell_keeper(const struct answer *answer) {
  // Its few messages always have room; without a keeper nobody listens.
  if (send(CHANNEL, answer->bytes, answer->length, MSG_NOSIGNAL) < 0) return;
}

static void __attribute__((noreturn))
become(int64_t id, const struct message *description, int channel, pid_t keeper) {
  prctl(PR_SET_PDEATHSIG, SIGCONT);
  for (size_t i = 0; i < count; i++) close(supervisors[i].channel);
  const int nothing = open("/dev/null", O_RDWR | O_CLOEXEC);
  dup2(nothing, STDIN_FILENO);
  dup2(nothing, STDOUT_FILENO);
  if (channel != CHANNEL) {
    dup2(channel, CHANNEL);
    close(channel);
  }
  fcntl(CHANNEL, F_SETFD, FD_CLOEXEC);
  if (getppid() != keeper) _exit(1);
  struct job job;
  struct outcome outcome = {.ending = FAILED};
  outcome.why = job_read(description, &job);
  if (!outcome.why) outcome = supervise(&job, description, false, CHANNEL, tell_keeper);
  struct answer answer;
  outcome_write(&answer, id, &outcome);
  tell_keeper(&answer);
  _exit(0);
}

// NULL with errno when there is no process or memory for one.
static struct supervisor *start(int64_t id, const struct message *description) {
  if (count == capacity) {
    const size_t more = capacity * 2 + 16;
    struct supervisor *moved = realloc(supervisors, more * sizeof *moved);
    if (!moved) return NULL;
    supervisors = moved;
    capacity = more;
  }
  int channel[2];
  if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, channel) != 0) return NULL;
  const pid_t keeper = getpid();
  const pid_t process = fork();
  if (process == 0) {
    close(channel[0]);
    become(id, description, channel[1], keeper);
  }
  const int failure = errno;
  close(channel[1]);
  if (process < 0) {
    close(channel[0]);
    errno = failure;
    return NULL;
  }
  supervisors[count] = (struct supervisor){
      .job = id, .process = process, .channel = channel[0], .answers = {.limit = LARGEST_ANSWER}};
  return &supervisors[count++];
}

void supervisors_run(int64_t id, const struct message *description, const char *trouble) {
  if (!trouble && !start(id, description)) trouble = strerror(errno);
  if (trouble) answer_ended(id, FAILED, trouble);
}

static void wake(const struct supervisor *supervisor) { kill(supervisor->process, SIGCONT); }

static void stop(const struct supervisor *supervisor) {
  kill(supervisor->process, SIGTERM);
  wake(supervisor);
}

void supervisor_stop(int64_t id) {
  const struct supervisor *supervisor = find(id);
  if (supervisor) stop(supervisor);
}

void supervisors_stop(void) {
  for (size_t i = 0; i < count; i++) stop(&supervisors[i]);
}

void supervisors_wake(void) {
  for (size_t i = 0; i < count; i++) wake(&supervisors[i]);
}

static void hand_on(struct supervisor *supervisor) {
  struct queue *input = &supervisor->input;
  while (!queue_is_empty(input)) {
    const ssize_t length = send(supervisor->channel, input->bytes + input->begin,
                                input->end - input->begin, MSG_DONTWAIT | MSG_NOSIGNAL);
    if (length < 0 && (errno == EAGAIN || errno == EINTR)) return;
    // Whoever does not listen any more gets nothing more.
    input->begin = length < 0 ? input->end : input->begin + (size_t)length;
  }
  queue_free(input);
}

bool supervisor_input(int64_t id, const char *line) {
  struct supervisor *supervisor = find(id);
  if (!supervisor) return true;
  const size_t before = supervisor->input.end - supervisor->input.begin;
  if (!queue_add(&supervisor->input, line, strlen(line)) ||
      !queue_add(&supervisor->input, "\n", 1)) {
    supervisor->input.end = supervisor->input.begin + before;
    return false;
  }
  hand_on(supervisor);
  return true;
}

struct pollfd *supervisors_poll(const struct pollfd *others, size_t other_count, size_t *total) {
  static struct pollfd *files;
  static size_t room;
  *total = other_count + count;
  if (*total > room) {
    struct pollfd *more = realloc(files, (*total + 16) * sizeof *more);
    if (!more) return NULL;
    files = more;
    room = *total + 16;
  }
  memcpy(files, others, other_count * sizeof *files);
  for (size_t i = 0; i < count; i++) {
    const bool full = !queue_is_empty(&supervisors[i].input);
    files[other_count + i] = (struct pollfd){.fd = supervisors[i].channel,
                                             .events = (short)(POLLIN | (full ? POLLOUT : 0))};
  }
  return files;
}

// Hands on what a supervisor says of its own job; it knows of no other.
static void hear(struct supervisor *supervisor) {
  for (;;) {
    size_t size;
    char *room = reader_room(&supervisor->answers, &size);
    const ssize_t length =
        size > 0 ? recv(supervisor->channel, room, size, MSG_DONTWAIT) : (ssize_t)-1;
    if (length <= 0) return;
    reader_add(&supervisor->answers, (size_t)length);
    struct message message;
    while (reader_next(&supervisor->answers, &message)) {
      struct answer answer = {.length = message.length + 3};
      if (answer.length > sizeof answer.bytes) continue;
      memset(answer.bytes, 0, 2);
      memcpy(answer.bytes + 2, message.fields, message.length);
      answer.bytes[answer.length - 1] = '\0';
      answers_send(&answer);
      supervisor->told_end |= message_is(&message, "ended");
    }
  }
}

void supervisors_hear(const struct pollfd *heard) {
  for (size_t i = 0; i < count; i++) {
    if (heard && !heard[i].revents) continue;
    hear(&supervisors[i]);
    hand_on(&supervisors[i]);
  }
}

static void forget(struct supervisor *supervisor) {
  // What it said last may still be on its way.
  hear(supervisor);
  if (!supervisor->told_end) {
    answer_ended(supervisor->job, UNKEPT, "the process that looked after it was killed");
  }
  close(supervisor->channel);
  queue_free(&supervisor->input);
  free(supervisor->answers.bytes);
  *supervisor = supervisors[--count];
}

bool supervisors_reap(void) {
  bool orphaned = false;
  int status;
  for (pid_t process; (process = waitpid(-1, &status, WNOHANG)) > 0;) {
    for (size_t i = 0; i < count; i++) {
      if (supervisors[i].process != process) continue;
      orphaned |= status != 0;
      forget(&supervisors[i]);
      break;
    }
  }
  return orphaned;
}
