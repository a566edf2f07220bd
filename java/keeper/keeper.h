// The keeper: it starts the jobs of one program, looks after every process that they start, and
// ends them all when they are stopped, when they end, and when the program is gone.
#ifndef VANTIRO_KEEPER_H
#define VANTIRO_KEEPER_H

#include <stdbool.h>
#include <stddef.h>
#include <sys/types.h>

#include "clock.h"
#include "message.h"

// What the program wants done. Its texts lie in the message that described it.
struct job {
  int64_t id;
  const char *directory;
  // 0 for no limit.
  int64_t timeout_ms;
  // A shell prefix that runs a program elsewhere and stays until it ends; "" for none, and then the
  // next three are "", too.
  const char *launcher;
  // A shell line for what a launcher leaves behind; "" for none.
  const char *cancel;
  // Where the far side finds the description; beside it lies what that side and the launcher say.
  const char *file;
  // This program, under the path that it has where the launcher runs it.
  const char *keeper;
  // How long the launcher and the cancel line have to end by themselves.
  int64_t grace_ms;
  // Held, as a shared lock on its second byte, while a process of the program may live.
  const char *lock;
  char **environment;
  char **command;
};

// How a job ended: by itself, past its time, because it was told to, not at all as far as is known
// (its launcher ended before it had said so), out of sight since what looked after it was killed,
// or without having run (the status is an errno).
enum ending { EXITED, TIMED_OUT, STOPPED, LOST, UNKEPT, FAILED, ENDINGS };

struct outcome {
  enum ending ending;
  // As a shell's: 128 and the signal's number for a job that a signal ended.
  int status;
  int signal;
  int64_t cpu_ms;
  int64_t wall_ms;
  // The most memory that one of its processes had.
  int64_t peak_kb;
  const char *why;
};

// Takes the description out of a message; why not when it is none. The lists live on.
const char *job_read(const struct message *message, struct job *job);

// Takes a shared lock on the program's lock file until this process ends; false with errno, also
// when the program does not hold it itself any more.
bool job_lock(const char *lock);

void outcome_write(struct answer *answer, int64_t id, const struct outcome *outcome);
// False when the message is no whole outcome of that job.
bool outcome_read(const struct message *message, int64_t id, struct outcome *outcome);

// What a new process does before it becomes the job, a launcher or a cancel line: its session,
// directory and environment. It gets the signal when the keeper ends before it.
void job_enter(const struct job *job, pid_t keeper, int signal_at_its_end);
void job_exec(const struct job *job) __attribute__((noreturn));
void job_exec_launcher(const struct job *job) __attribute__((noreturn));
void job_exec_cancel(const struct job *job) __attribute__((noreturn));

// The launcher's side and the far side share a file, to which the far side adds messages.
bool word_create(const struct job *job, const struct message *description);
bool word_started(const struct job *job);
bool word_ended(const struct job *job, struct outcome *outcome);
bool word_add(const struct job *job, const struct answer *answer);

// Starts the job, hands it its input, and returns when it and all that it started have ended. The
// input comes as bytes, and its end means that the program is gone. `far` is the far side of a
// launcher. What is said on the way goes to `tell`.
struct outcome supervise(const struct job *job, const struct message *description, bool far,
                         int input, void (*tell)(const struct answer *answer));

// Serves the program until it is gone: requests from standard input, answers to standard output.
int serve(const char *lock);

// What the processes of jobs inherit, as a text that differs when any of it does; false with errno.
bool surroundings(char *text, size_t size);
// Why no job can be looked after here; NULL when it can.
const char *surroundings_trouble(void);

// What was used by processes that have ended.
struct usage {
  int64_t cpu_ms;
  int64_t peak_kb;
};

// Reaps what has ended; whether the process given was among it, with its status as of wait.
bool children_reap(pid_t wanted, int *status, struct usage *usage);

// Whether a process is a child of that parent.
bool children_has(pid_t parent, pid_t process);

// Sends every child, but for those to be spared, a signal to end at once; how many may still end.
// Only children: their numbers are not used again before they are reaped, so no stranger is hit.
int children_kill_once(bool (*spared)(pid_t));

// Kills all children and what they leave behind, and reaps them.
void children_kill(struct usage *usage);

// The signals that the keeper acts on are blocked and read from a descriptor.
int signals_open(void);
// The number of the next signal that has come, 0 when there is none.
int signals_next(int descriptor);
// What a new program expects: every signal with its default action, none blocked.
void signals_restore(void);

#endif
