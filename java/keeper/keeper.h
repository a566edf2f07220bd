// The keeper: it starts the jobs of one program, looks after every process that they start, and
// ends them all when they are stopped, when they end, and when the program is gone.
#ifndef VANTIRO_KEEPER_H
#define VANTIRO_KEEPER_H

#include <stdbool.h>
#include <stddef.h>
#include <sys/types.h>

// What the program wants done, read from the file that it wrote for the job.
struct job {
  const char *file;
  const char *directory;
  long timeout_s;
  // A shell prefix that runs a program elsewhere and stays until it ends; "" for none.
  const char *launcher;
  // A shell line for what a launcher leaves behind; "" for none.
  const char *cancel;
  // How long the launcher and the cancel line have to end by themselves.
  long grace_s;
  // Held, as a shared lock on its second byte, while a process of the program may live.
  const char *lock;
  // This program, under the path that it has where the launcher runs it.
  const char *keeper;
  char **environment;
  char **command;
};

// How a job ended: by itself, past its time, because it was told to, not at all as far as is known
// (its launcher ended before it had said so), or without having run (the status is an errno).
enum ending { EXITED, TIMED_OUT, STOPPED, LOST, FAILED, ENDINGS };
extern const char *const ending_words[ENDINGS];

struct outcome {
  enum ending ending;
  int status;
  long cpu_ms;
};

// Reads a job's file; false with errno when it cannot be read or is not whole. The text of the job
// lives as long as the process.
bool job_read(const char *file, struct job *job);

// Takes a shared lock on the program's lock file until this process ends; false with errno.
bool job_lock(const char *lock);

// What a new process does before it becomes the job, a launcher or a cancel line: its session,
// directory and environment. It gets the signal when the keeper ends before it.
void job_enter(const struct job *job, pid_t keeper, int signal_at_its_end);
void job_exec(const struct job *job) __attribute__((noreturn));
void job_exec_launcher(const struct job *job) __attribute__((noreturn));
void job_exec_cancel(const struct job *job) __attribute__((noreturn));

// The launcher's side and the far side share a file, to which the far side adds lines.
bool word_create(const struct job *job);
bool word_started(const struct job *job);
bool word_ended(const struct job *job, struct outcome *outcome);
bool word_add_started(const struct job *job);
bool word_add_ended(const struct job *job, const struct outcome *outcome);

// Starts the job, hands it its input, and returns when it and all that it started have ended. On
// the far side of a launcher the input comes from standard input, whose end means that the program
// is gone; elsewhere from the file that the program adds lines to.
struct outcome supervise(const struct job *job, bool far, void (*on_started)(void));

// Serves the program until it is gone: requests from standard input, answers to standard output.
int serve(pid_t program, const char *lock);

// Reaps what has ended; whether the process given was among it, with its status as a shell's. Adds
// the processor time of all.
bool children_reap(pid_t wanted, int *status, long *cpu_ms);

// Sends every child, but for those to be spared, a signal to end at once; how many may still end.
// Only children: their numbers are not used again before they are reaped, so no stranger is hit.
int children_kill_once(bool (*spared)(pid_t));

// Kills all children and what they leave behind, and reaps them.
void children_kill(long *cpu_ms);

// The signals that the keeper acts on are blocked and read from a descriptor.
int signals_open(void);
// The number of the next signal that has come, 0 when there is none.
int signals_next(int descriptor);
// What a new program expects: every signal with its default action, none blocked.
void signals_restore(void);

long now_ms(void);

#endif
