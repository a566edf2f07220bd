/*
 * Counts the primes below a limit with a project of jobs, from its creation to its unpacked
 * results: the jobs are command lines, waited for in the background, and their result files come
 * back as archives.
 *
 *   project [DIRECTORY]    DIRECTORY receives the results; the default is project-results
 */
#define _POSIX_C_SOURCE 200809L

#include <limits.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <vantiro.h>

#include "explain.h"

enum { JOBS = 12, NUMBERS_OF_A_JOB = 10000 };

/* A statistic of a project as a number. */
static int statistic(int project, const char *name) {
  char text[32] = "";
  unsigned int size = sizeof text;
  require("getProjectStatistic", vantiro_getProjectStatistic(project, name, text, &size), 0);
  return atoi(text);
}

/* One job for each range of numbers: awk divides, and leaves the count in primes.txt. */
static void create_jobs(int project) {
  for (int i = 0; i < JOBS; ++i) {
    char line[512];
    const char *list[] = {line};
    snprintf(line, sizeof line,
             "awk 'BEGIN {"
             " for (n = %d; n < %d; ++n) {"
             " prime = n > 1;"
             " for (d = 2; prime && d * d <= n; ++d) prime = n %% d > 0;"
             " count += prime"
             " }"
             " print count }' > primes.txt",
             i * NUMBERS_OF_A_JOB, (i + 1) * NUMBERS_OF_A_JOB);
    require("createProjectJobs", vantiro_createProjectJobs2(project, 1, list), 0);
  }
  require("markAllJobsCreated", vantiro_markAllJobsCreated(project), 0);
}

/* Waits in the background, so that the program can tell how far the jobs are meanwhile. */
static void run(int project) {
  int finished = -1;
  require("startProject", vantiro_startProject(project), 0);
  require("waitCompletionBG", vantiro_waitCompletionBG(project), 0);
  for (int completed = 0; !completed;) {
    vantiro_actionWait(200);
    completed = vantiro_isCompleted(project);
    require("isCompleted", completed, 0);
    const int now = statistic(project, "completed") + statistic(project, "failed");
    if (now != finished) printf("%2d of %d jobs finished\n", now, JOBS);
    fflush(stdout);
    finished = now;
  }
  require("the jobs", vantiro_waitCompletion(project), 0);
}

static void list_archives(int project) {
  int count = 1;
  for (int i = 0; i < count; ++i) {
    char name[256];
    unsigned int size = sizeof name;
    count = i;
    require("getResultFiles", vantiro_getResultFiles(project, &count, name, &size), 0);
    printf("%s%s", i == 0 ? "archives: " : ", ", name);
  }
  printf("\n");
}

static int sum_of_results(const char *directory) {
  int sum = 0;
  for (int job = 1; job <= JOBS; ++job) {
    char path[PATH_MAX];
    int primes = 0;
    FILE *file;
    snprintf(path, sizeof path, "%s/job-%d/primes.txt", directory, job);
    file = fopen(path, "r");
    if (!file || fscanf(file, "%d", &primes) != 1) {
      fprintf(stderr, "%s is not a result of a job\n", path);
      exit(EXIT_FAILURE);
    }
    fclose(file);
    sum += primes;
  }
  return sum;
}

int main(int argc, char **argv) {
  const char *directory = argc > 1 ? argv[1] : "project-results";
  int session, project, files;

  if (argc > 2 || directory[0] == '-') {
    fprintf(stderr, "usage: project [DIRECTORY]\n");
    return 2;
  }
  require("starting the local grid", vantiro_init(), 0);
  session = vantiro_open();
  require("open", session, 0);
  if (vantiro_ready(session) != 1) {
    fprintf(stderr, "The local grid is not ready: its directory cannot be written to.\n");
    return EXIT_FAILURE;
  }

  project = vantiro_createProject(session, 5, "primes", 1, "author=project.c");
  require("createProject", project, 0);
  require("setDownloadDir", vantiro_setDownloadDir(project, directory), 0);
  require("setUnzipDir", vantiro_setUnzipDir(project, directory), 0);
  create_jobs(project);
  run(project);

  require("downloadResult", vantiro_downloadResult(project), 0);
  files = vantiro_unzip(project);
  require("unzip", files, 0);
  list_archives(project);
  printf("%d files unpacked in %s\n", files, directory);
  printf("%d primes below %d\n", sum_of_results(directory), JOBS * NUMBERS_OF_A_JOB);
  printf("%d ms, of which the jobs used %d ms of processor time\n", vantiro_getUsedTime(project),
         vantiro_getUsedCpuTime(project));

  require("removeProject", vantiro_removeProject(project), 0);
  require("close", vantiro_close(session), 0);
  require("unload", vantiro_unload(0), 0);
  return printed();
}
