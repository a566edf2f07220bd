/*
 * Runs a program over many inputs, several at a time, in the manner of xargs -P: a parallel-each
 * run of one job for each input. See usage() below.
 *
 * What runs is a small shell script, made for the occasion, which every job gets; what differs
 * between the jobs are their job files: one that holds the input's line or name, and the input
 * itself when it is a file.
 */
#define _XOPEN_SOURCE 700

#include <fcntl.h>
#include <jni.h>
#include <limits.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>
#include <vantiro.h>

#include "each_options.h"
#include "each_progress.h"
#include "explain.h"

/* The files that the run is described with, in a directory that is removed at the end. */
static char scratch[PATH_MAX];

static const char *in_scratch(const char *name) {
  static char path[PATH_MAX + 32];
  snprintf(path, sizeof path, "%s/%s", scratch, name);
  return path;
}

static FILE *create(const char *name) {
  FILE *file = fopen(in_scratch(name), "w");
  if (file) return file;
  perror(in_scratch(name));
  exit(EXIT_FAILURE);
}

static void finish(FILE *file, const char *name) {
  if (fclose(file) == 0) return;
  perror(in_scratch(name));
  exit(EXIT_FAILURE);
}

/* Writes `text` as one word of the shell, with the input for each {}. */
static void write_word(FILE *script, const char *text) {
  fputs(" '", script);
  for (; *text; ++text) {
    if (strncmp(text, "{}", 2) == 0) {
      fputs("'\"$input\"'", script);
      ++text;
    } else if (*text == '\'') {
      fputs("'\\''", script);
    } else {
      fputc(*text, script);
    }
  }
  fputc('\'', script);
}

static void write_script(const struct options *options) {
  FILE *script = create("each.sh");
  fputs("#!/bin/sh\nIFS= read -r input <each.input\nexec </dev/null", script);
  for (char **word = options->command; *word; ++word) write_word(script, *word);
  if (!options->names_input) fputs(" \"$input\"", script);
  fputc('\n', script);
  finish(script, "each.sh");
}

/* The name, in the scratch directory, of a job's file that holds its input. */
static const char *input_file(int index) {
  static char name[32];
  snprintf(name, sizeof name, "input-%d", index + 1);
  return name;
}

static int inputs_written;

static void write_inputs(const struct options *options) {
  for (int i = 0; i < options->count; ++i) {
    FILE *file = create(input_file(i));
    inputs_written = i + 1;
    fprintf(file, "%s\n", input_name(options, i));
    finish(file, input_file(i));
  }
}

static void remove_scratch(void) {
  unlink(in_scratch("each.sh"));
  for (int i = 0; i < inputs_written; ++i) unlink(in_scratch(input_file(i)));
  rmdir(scratch);
}

static void make_scratch(void) {
  const char *parent = getenv("TMPDIR");
  snprintf(scratch, sizeof scratch, "%s/peach_each-XXXXXX", parent && *parent ? parent : "/tmp");
  if (!mkdtemp(scratch)) {
    perror(scratch);
    exit(EXIT_FAILURE);
  }
  atexit(remove_scratch);
}

/* A line of a job's standard output, "JOB:LINE", becomes a line of this program's. A very long one
 * comes in pieces, "JOB+PIECE", and is broken when another job writes in between. */
static void print_line(const char *result) {
  static long unfinished;
  char *text;
  const long job = strtol(result, &text, 10);
  if (unfinished && unfinished != job) putchar('\n');
  unfinished = *text == '+' ? job : 0;
  fputs(text + 1, stdout);
  if (!unfinished) putchar('\n');
}

static void add_inputs(int run, const struct options *options) {
  JNIEnv *const jni = vantiro_getJNIEnv();
  require("setJobFileNames", vantiro_peach_setJobFileNames(run, 1, "each.input"), run);
  /* The archive of these files is made anew in any case: there was no run with them before. */
  require("setJobSkipDigest", vantiro_peach_setJobSkipDigest(run, 1), run);
  for (int i = 0; i < options->count; ++i) {
    /* A frame gives back what a call leaves behind in the thread. */
    (*jni)->PushLocalFrame(jni, 16);
    require("addJobFile",
            vantiro_peach_addJobFile(run, options->from_files ? 2 : 1, in_scratch(input_file(i)),
                                     options->inputs[i]),
            run);
    (*jni)->PopLocalFrame(jni, NULL);
  }
}

static int describe_run(const struct options *options) {
  const int run = vantiro_peach_handle();
  require("asking for a peach handle", run, 0);
  require("setName", vantiro_peach_setName(run, "peach_each"), run);
  require("addExeFile", vantiro_peach_addExeFile(run, in_scratch("each.sh"), "each.sh", "", "755"),
          run);
  require("setExecutable", vantiro_peach_setExecutable(run, "exec ./each.sh"), run);
  add_inputs(run, options);
  if (options->output) {
    require("setStateDir", vantiro_peach_setStateDir(run, options->output), run);
  } else {
    require("setIntermediateResultHandler",
            vantiro_peach_setIntermediateResultHandler(run, print_line), run);
  }
  require("setCleanup", vantiro_peach_setCleanup(run, 1), run);
  require("setRemove", vantiro_peach_setRemove(run, 1), run);
  return run;
}

/* What is printed must not get into a file that the Java machine opens in the place of a closed
 * one. */
static void open_standard_files(void) {
  int file;
  do {
    file = open("/dev/null", O_RDWR);
  } while (file >= 0 && file <= STDERR_FILENO);
  close(file);
}

int main(int argc, char **argv) {
  static struct options options;
  open_standard_files();
  read_options(argc, argv, &options);
  if (options.count == 0) return EXIT_SUCCESS;

  make_scratch();
  write_script(&options);
  write_inputs(&options);
  require(
      "starting the local grid",
      vantiro_initWithoutFile(NULL, NULL, NULL, NULL, options.jobs, NULL, NULL, 0, 0, NULL, NULL),
      0);

  const int run = describe_run(&options);
  progress_begin(run, options.count);
  const int status = vantiro_peach_execute(run);
  progress_finish();
  if (status < 0) explain("the run", status, run);
  require("done", vantiro_peach_done(run), 0);
  return printed() == EXIT_SUCCESS && status >= 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}
