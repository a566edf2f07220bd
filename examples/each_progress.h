/* How far a run is, on standard error. */
#ifndef EACH_PROGRESS_H
#define EACH_PROGRESS_H

/* Follows the run from a thread of its own, until progress_finish(). */
void progress_begin(int run, int jobs);

void progress_finish(void);

#endif
