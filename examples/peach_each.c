/*
 * Runs a command line over many inputs: a parallel-each run of one job for each line of standard
 * input, which a command line reads. What it prints comes as job:line.
 *
 *   seq 10 | peach_each 'read n; echo $((n * n))'
 *
 * vantiro-each is the tool for daily work.
 */
#define _XOPEN_SOURCE 700

#include <stdio.h>
#include <stdlib.h>
#include <unistd.h>
#include <vantiro.h>

#include "explain.h"

static void print_line(const char *result) { puts(result); }

/* Each job finds its line in a file of its own, under the same name. */
static int add_inputs(int run) {
  char path[64], *line = NULL;
  size_t capacity = 0;
  int count = 0;
  require("setJobFileNames", vantiro_peach_setJobFileNames(run, 1, "input"), run);
  while (getline(&line, &capacity, stdin) > 0) {
    snprintf(path, sizeof path, "/tmp/peach_each-%ld-%d", (long)getpid(), count);
    FILE *file = fopen(path, "wx");
    if (!file || fputs(line, file) == EOF || fclose(file) == EOF) {
      perror(path);
      exit(EXIT_FAILURE);
    }
    require("addJobFile", vantiro_peach_addJobFile(run, 1, path), run);
    ++count;
  }
  free(line);
  return count;
}

static void remove_inputs(int count) {
  char path[64];
  while (count-- > 0) {
    snprintf(path, sizeof path, "/tmp/peach_each-%ld-%d", (long)getpid(), count);
    unlink(path);
  }
}

int main(int argc, char **argv) {
  char command[4096];
  if (argc != 2) {
    fputs("usage: peach_each 'COMMAND LINE', with an input on each line of standard input\n",
          stderr);
    return 2;
  }
  snprintf(command, sizeof command, "exec <input; %s", argv[1]);
  require("the start", vantiro_init(), 0);
  const int run = vantiro_peach_handle();
  require("asking for a peach handle", run, 0);
  require("setExecutable", vantiro_peach_setExecutable(run, command), run);
  require("setRemove", vantiro_peach_setRemove(run, 1), run);
  require("setIntermediateResultHandler",
          vantiro_peach_setIntermediateResultHandler(run, print_line), run);
  const int count = add_inputs(run);
  const int status = count > 0 ? vantiro_peach_execute(run) : VANTIRO_OK;
  remove_inputs(count);
  require("the run", status, run);
  require("done", vantiro_peach_done(run), 0);
  return printed();
}
