/*
 * Estimates pi with jobs that run at the same time: a parallel-each run from its description to
 * its result files, with intermediate results while it runs.
 *
 *   pi [SAMPLES]    SAMPLES is the number of random points that each of the 16 jobs draws
 */
#define _POSIX_C_SOURCE 200809L

#include <limits.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <time.h>
#include <unistd.h>
#include <vantiro.h>

#include "explain.h"
#include "pi_progress.h"

static char directory[PATH_MAX]; /* where this program is, and the worker beside it */

static void find_directory(void) {
  const ssize_t length = readlink("/proc/self/exe", directory, sizeof directory - 1);
  directory[length > 0 ? length : 0] = '\0';
  if (strrchr(directory, '/')) *strrchr(directory, '/') = '\0';
}

/* The path of a file in that directory; valid until the next call. */
static const char *beside(const char *name) {
  static char path[PATH_MAX + 32];
  snprintf(path, sizeof path, "%s/%s", directory, name);
  return path;
}

static double now(void) {
  struct timespec time;
  clock_gettime(CLOCK_MONOTONIC, &time);
  return (double)time.tv_sec + (double)time.tv_nsec * 1e-9;
}

static int describe_run(long long samples) {
  char number[32];
  const int run = vantiro_peach_handle();
  require("asking for a peach handle", run, 0);

  snprintf(number, sizeof number, "%lld", samples);
  require("setName", vantiro_peach_setName(run, "pi"), run);
  require("setJobs", vantiro_peach_setJobs(run, JOBS), run);
  require("addExeFile", vantiro_peach_addExeFile(run, beside("pi_worker"), "pi_worker", "", ""),
          run);
  require("setExecutable", vantiro_peach_setExecutable(run, "./pi_worker"), run);
  require("putProjectParam", vantiro_peach_putProjectParam(run, "samples", number), run);
  require("addOutputFile", vantiro_peach_addOutputFile(run, "pi.txt"), run);
  require("setCleanup", vantiro_peach_setCleanup(run, 1), run);
  require("setRemove", vantiro_peach_setRemove(run, 1), run);
  require("setIntermediateResultHandler",
          vantiro_peach_setIntermediateResultHandler(run, progress_take), run);
  return run;
}

static struct counts read_results(int run, int *files) {
  struct counts sum = {0, 0};
  char path[PATH_MAX];
  unsigned int size = sizeof path;
  require("nextFile", vantiro_peach_nextFile(run, path, &size), run);
  for (*files = 0; size != 0; ++*files) {
    struct counts counts;
    FILE *file = fopen(path, "r");
    if (!file || fscanf(file, "%lld %lld", &counts.inside, &counts.samples) != 2) {
      fprintf(stderr, "%s is not a result of a job\n", path);
      exit(EXIT_FAILURE);
    }
    fclose(file);
    sum.inside += counts.inside;
    sum.samples += counts.samples;
    size = sizeof path;
    require("nextFile", vantiro_peach_nextFile(run, path, &size), run);
  }
  return sum;
}

/* A property of the Java runtime, valid until the next call with the same `place`. */
static const char *property(const char *key, char place[64]) {
  unsigned int size = 64;
  if (vantiro_getJavaSystemProperty(key, place, &size) != VANTIRO_OK || size == 0) return "unknown";
  return place;
}

int main(int argc, char **argv) {
  char version[64], machine[64], bits[64], *end = NULL;
  const long long samples = argc > 1 ? strtoll(argv[1], &end, 10) : 20000000;
  struct counts sum;
  int run, files;
  double start;

  if (argc > 2 || (end && (end == argv[1] || *end)) || samples < 1 || samples > 1000000000) {
    fprintf(stderr, "usage: pi [SAMPLES]\nSAMPLES is from 1 to 1000000000, for each of %d jobs\n",
            JOBS);
    return 2;
  }
  find_directory();
  start = now();
  require(
      "starting the local grid",
      vantiro_initWithoutFile(beside("pi-grid"), NULL, NULL, NULL, 0, NULL, NULL, 0, 0, NULL, NULL),
      0);

  run = describe_run(samples);
  progress_start(samples);
  const int status = vantiro_peach_execute(run);
  progress_end();
  require("the run", status, run);
  sum = read_results(run, &files);
  require("done", vantiro_peach_done(run), 0);
  if (files != JOBS) {
    fprintf(stderr, "%d jobs left %d result files\n", JOBS, files);
    return EXIT_FAILURE;
  }

  printf("\n");
  printf("  pi            %.7f\n", pi_of(sum));
  printf("  std. error    %.7f\n", standard_error_of(sum));
  printf("  samples       %lld, from %d jobs\n", sum.samples, files);
  printf("  Java runtime  %s %s, %s bits\n", property("java.vm.name", machine),
         property("java.version", version), property("sun.arch.data.model", bits));
  printf("  time          %.1f seconds\n", now() - start);
  return printed();
}
