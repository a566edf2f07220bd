#define _XOPEN_SOURCE 700
#define _GNU_SOURCE

#include "each_options.h"

#include <dirent.h>
#include <errno.h>
#include <getopt.h>
#include <limits.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

static void usage(FILE *out) {
  fputs(
      "usage: peach_each [OPTION]... [--] COMMAND [ARGUMENT]...\n"
      "Runs COMMAND once for each input, several at a time. {} in the COMMAND's arguments stands\n"
      "for the input; without a {} the input is added as the last argument.\n"
      "\n"
      "  -j, --jobs N         how many run at once (default: one for each processor)\n"
      "  -i, --input FILE...  the inputs are these files; each job gets its own copy. The list\n"
      "                       ends at the next option or at --. Without --input, each line of\n"
      "                       standard input is an input\n"
      "  -o, --output DIR     keep what job N prints and writes in DIR/job-N, instead of\n"
      "                       printing it; DIR is new or empty\n"
      "  -h, --help           this text\n"
      "\n"
      "The exit status is 0 when all jobs succeeded, 1 when one failed, 2 for a wrong call.\n"
      "\n"
      "  seq 10 | peach_each sh -c 'echo $(({} * {}))'\n"
      "  peach_each --input *.txt -- wc -w {}\n",
      out);
}

static void refuse(const char *what, const char *which) {
  fprintf(stderr, "peach_each: %s%s\nTry peach_each --help.\n", what, which);
  exit(2);
}

static void *checked(void *memory) {
  if (memory) return memory;
  perror("peach_each");
  exit(EXIT_FAILURE);
}

static void add_input(struct options *options, const char *text) {
  if (strchr(text, '\n')) refuse("an input must be one line: ", text);
  options->inputs =
      checked(realloc(options->inputs, ((size_t)options->count + 1) * sizeof *options->inputs));
  options->inputs[options->count++] = checked(strdup(text));
}

static void add_file(struct options *options, const char *name) {
  char path[PATH_MAX];
  if (!realpath(name, path) || access(path, R_OK) != 0) {
    fprintf(stderr, "peach_each: cannot read %s: %s\n", name, strerror(errno));
    exit(2);
  }
  add_input(options, path);
}

static void read_lines(struct options *options) {
  char *line = NULL;
  size_t capacity = 0;
  ssize_t length;
  while ((length = getline(&line, &capacity, stdin)) > 0) {
    if (line[length - 1] == '\n') line[length - 1] = '\0';
    add_input(options, line);
  }
  if (ferror(stdin)) {
    perror("peach_each: cannot read the inputs");
    exit(2);
  }
  free(line);
}

static int number_of_jobs(const char *text) {
  char *end;
  const long number = strtol(text, &end, 10);
  if (end == text || *end || number < 1 || number > 1000) {
    refuse("--jobs takes a number from 1 to 1000, not ", text);
  }
  return (int)number;
}

/* A program that is given by its path is not in the directories of the jobs. */
static void find_program(char **command) {
  char path[PATH_MAX];
  if (!strchr(command[0], '/')) return;
  if (!realpath(command[0], path) || access(path, X_OK) != 0) {
    fprintf(stderr, "peach_each: cannot run %s: %s\n", command[0], strerror(errno));
    exit(2);
  }
  command[0] = checked(strdup(path));
}

/* A run replaces what an earlier one left in its directory, which must not be somebody's own. */
static void check_output(const char *directory) {
  struct dirent *entry;
  DIR *found = opendir(directory);
  if (!found && errno != ENOENT) refuse("--output needs a directory, this is none: ", directory);
  while (found && (entry = readdir(found)) != NULL) {
    if (strcmp(entry->d_name, ".") != 0 && strcmp(entry->d_name, "..") != 0) {
      refuse("--output needs a new or empty directory, there are files in ", directory);
    }
  }
  if (found) closedir(found);
}

void read_options(int argc, char **argv, struct options *options) {
  static const struct option names[] = {{"jobs", required_argument, NULL, 'j'},
                                        {"input", required_argument, NULL, 'i'},
                                        {"output", required_argument, NULL, 'o'},
                                        {"help", no_argument, NULL, 'h'},
                                        {NULL, 0, NULL, 0}};
  int option;
  memset(options, 0, sizeof *options);
  /* The + ends the options at the command, whose own options are not for us. */
  while ((option = getopt_long(argc, argv, "+j:i:o:h", names, NULL)) != -1) {
    switch (option) {
      case 'j':
        options->jobs = number_of_jobs(optarg);
        break;
      case 'i':
        options->from_files = 1;
        add_file(options, optarg);
        while (optind < argc && argv[optind][0] != '-') add_file(options, argv[optind++]);
        break;
      case 'o':
        check_output(optarg);
        options->output = optarg;
        break;
      case 'h':
        usage(stdout);
        exit(EXIT_SUCCESS);
      default:
        fputs("Try peach_each --help.\n", stderr);
        exit(2);
    }
  }
  if (optind == argc) {
    refuse(options->from_files ? "there is no command; -- must end the list of files"
                               : "there is no command",
           "");
  }
  options->command = argv + optind;
  find_program(options->command);
  for (char **word = options->command; *word; ++word) {
    if (strstr(*word, "{}")) options->names_input = 1;
  }
  if (!options->from_files) read_lines(options);
}

const char *input_name(const struct options *options, int index) {
  const char *input = options->inputs[index];
  return options->from_files ? strrchr(input, '/') + 1 : input;
}
