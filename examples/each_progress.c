#define _POSIX_C_SOURCE 200809L

#include "each_progress.h"

#include <jni.h>
#include <pthread.h>
#include <stdatomic.h>
#include <stdio.h>
#include <stdlib.h>
#include <time.h>
#include <unistd.h>
#include <vantiro.h>

static pthread_t watcher;
static atomic_int finished;
static int run_handle;
static int job_count;

/* Milliseconds of a clock that only goes forward. */
static long long now(void) {
  struct timespec time;
  clock_gettime(CLOCK_MONOTONIC, &time);
  return time.tv_sec * 1000LL + time.tv_nsec / 1000000;
}

static int statistic(int project, const char *name) {
  char text[32] = "";
  unsigned int size = sizeof text;
  return vantiro_getProjectStatistic(project, name, text, &size) == VANTIRO_OK ? atoi(text) : 0;
}

static void show(int done, int failed) {
  const int on_terminal = isatty(STDERR_FILENO);
  fprintf(stderr, "%s%d of %d jobs done, %d failed%s", on_terminal ? "\r" : "", done, job_count,
          failed, on_terminal ? "" : "\n");
}

static void *watch(void *unused) {
  JavaVM *const machine = vantiro_getJavaVM();
  const int project = vantiro_peach_getProjectHandle(run_handle);
  const int interval = isatty(STDERR_FILENO) ? 100 : 1000;
  long long shown_at = now();
  (void)unused;
  for (int last = 0; !last;) {
    vantiro_actionWait(interval);
    last = finished;
    if (!last && now() - shown_at < interval) continue;
    const int failed = statistic(project, "failed");
    show(statistic(project, "completed") + failed, failed);
    shown_at = now();
  }
  if (isatty(STDERR_FILENO)) fputc('\n', stderr);
  /* Its first call attached this thread to the Java machine. */
  (*machine)->DetachCurrentThread(machine);
  return NULL;
}

void progress_begin(int run, int jobs) {
  run_handle = run;
  job_count = jobs;
  finished = 0;
  if (pthread_create(&watcher, NULL, watch, NULL) != 0) {
    perror("peach_each: the progress thread");
    exit(EXIT_FAILURE);
  }
}

void progress_finish(void) {
  finished = 1;
  pthread_join(watcher, NULL);
}
