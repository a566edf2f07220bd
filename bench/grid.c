/*
 * Runs many small jobs on the local grid, and prints what each step of it took as a line of JSON.
 *
 * grid project|peach JOBS PARALLEL HOME
 */
#define _POSIX_C_SOURCE 199309L

#include <jni.h>
#include <limits.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <time.h>
#include <vantiro.h>

static double now(void) {
  struct timespec time;
  clock_gettime(CLOCK_MONOTONIC, &time);
  return (double)time.tv_sec + (double)time.tv_nsec / 1e9;
}

static int require(const char *what, int status) {
  if (status >= 0) return status;
  char text[1000] = "";
  unsigned int size = sizeof text;
  vantiro_getLastErrorMessage(text, &size);
  fprintf(stderr, "grid: %s failed with status %d: %s\n", what, status, text);
  exit(EXIT_FAILURE);
}

/* The most memory that this process has had, in MB. */
static long peak_memory(void) {
  char line[200];
  long kilobytes = 0;
  FILE *status = fopen("/proc/self/status", "r");
  while (status && fgets(line, sizeof line, status)) sscanf(line, "VmHWM: %ld", &kilobytes);
  if (status) fclose(status);
  return kilobytes / 1024;
}

struct times {
  double describing, running, listing, downloading;
};

static int run_project(int jobs, const char *downloads, struct times *times) {
  double begin = now();
  const int session = require("open", vantiro_open());
  const int project =
      require("createEmptyProject", vantiro_createEmptyProject(session, 0, "bench"));
  JNIEnv *const jni = vantiro_getJNIEnv();
  for (int i = 1; i <= jobs; ++i) {
    char number[12];
    snprintf(number, sizeof number, "%d", i);
    (*jni)->PushLocalFrame(jni, 16);
    require("createJob", vantiro_createJob(project, 2, "echo", number));
    (*jni)->PopLocalFrame(jni, NULL);
  }
  require("markAllJobsCreated", vantiro_markAllJobsCreated(project));
  times->describing = now() - begin;

  begin = now();
  require("startProject", vantiro_startProject(project));
  require("waitCompletion", vantiro_waitCompletion(project));
  times->running = now() - begin;

  begin = now();
  int files = 0;
  for (int count = 1; files < count; ++files) {
    char name[PATH_MAX];
    unsigned int size = sizeof name;
    int index = files;
    require("getResultFiles", vantiro_getResultFiles(project, &index, name, &size));
    count = index;
  }
  times->listing = now() - begin;

  begin = now();
  require("setDownloadDir", vantiro_setDownloadDir(project, downloads));
  require("downloadResult", vantiro_downloadResult(project));
  times->downloading = now() - begin;
  return files;
}

static int run_peach(int jobs, struct times *times) {
  double begin = now();
  const int run = require("handle", vantiro_peach_handle());
  require("setExecutable", vantiro_peach_setExecutable(run, "echo $VANTIRO_JOB"));
  require("setJobs", vantiro_peach_setJobs(run, jobs));
  require("setCleanup", vantiro_peach_setCleanup(run, 1));
  times->describing = now() - begin;

  begin = now();
  require("execute", vantiro_peach_execute(run));
  times->running = now() - begin;

  begin = now();
  int files = 0;
  JNIEnv *const jni = vantiro_getJNIEnv();
  for (char name[PATH_MAX];;) {
    unsigned int size = sizeof name;
    (*jni)->PushLocalFrame(jni, 16);
    require("nextFile", vantiro_peach_nextFile(run, name, &size));
    (*jni)->PopLocalFrame(jni, NULL);
    if (size == 0) break;
    ++files;
  }
  times->listing = now() - begin;
  times->downloading = 0;
  return files;
}

int main(int argc, char **argv) {
  if (argc != 5) return EXIT_FAILURE;
  const int jobs = atoi(argv[2]);
  char settings[PATH_MAX], downloads[PATH_MAX];
  snprintf(settings, sizeof settings, "%s/settings", argv[4]);
  snprintf(downloads, sizeof downloads, "%s/downloads", argv[4]);
  FILE *file = fopen(settings, "w");
  if (!file) return EXIT_FAILURE;
  fprintf(file, "grid.home=%s/grid\ngrid.processors=%d\n", argv[4], atoi(argv[3]));
  fclose(file);
  require("the start", vantiro_initFile(settings));

  struct times times;
  const int files = strcmp(argv[1], "peach") == 0 ? run_peach(jobs, &times)
                                                  : run_project(jobs, downloads, &times);
  if (files < jobs) require("every job has a result: it", -1);
  printf(
      "{\"describing\": %.4f, \"running\": %.4f, \"listing\": %.4f, \"downloading\": %.4f, "
      "\"memory\": %ld}\n",
      times.describing, times.running, times.listing, times.downloading, peak_memory());
  require("unload", vantiro_unload2(1, 1));
  return EXIT_SUCCESS;
}
