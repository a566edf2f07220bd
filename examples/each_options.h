/* The command line of peach_each. */
#ifndef EACH_OPTIONS_H
#define EACH_OPTIONS_H

struct options {
  char **command;     /* the program and its arguments, ended by a null pointer */
  int names_input;    /* whether a {} stands in the command */
  int jobs;           /* how many run at once; 0 is one for each processor */
  const char *output; /* where the results are kept, or null */
  int from_files;     /* whether the inputs are files, not lines */
  char **inputs;
  int count;
};

/* Fills `options`, or ends the program with a message and status 2. */
void read_options(int argc, char **argv, struct options *options);

/* What {} stands for in a job: the line, or the file's name in the job's directory. */
const char *input_name(const struct options *options, int index);

#endif
