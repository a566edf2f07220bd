/* Says in plain words what went wrong in a call of the library. */
#ifndef EXPLAIN_H
#define EXPLAIN_H

/*
 * Writes what was tried, the status and its text to standard error, and what the Java side says
 * besides, when it says anything. `run` is the peach handle of the run concerned, or 0.
 */
void explain(const char *tried, int status, int run);

/* As explain(), and then ends the program with exit status 1, when `status` is a failure. */
void require(const char *tried, int status, int run);

/*
 * What a program ends with that has printed all it had to: EXIT_SUCCESS when it has arrived, else a
 * message and EXIT_FAILURE.
 */
int printed(void);

#endif
