/* How far the jobs of the pi example are, shown while they run. */
#ifndef PI_PROGRESS_H
#define PI_PROGRESS_H

enum { JOBS = 16 };

/* Counts points: how many were drawn, and how many of them lay in the circle. */
struct counts {
  long long inside;
  long long samples;
};

/* The estimate of pi that the counts give, and its standard error. */
double pi_of(struct counts counts);
double standard_error_of(struct counts counts);

/* To be called once, before results arrive: `samples` is what each job will draw. */
void progress_start(long long samples);

/*
 * Takes one intermediate result, "JOB:INSIDE SAMPLES". The thread that executes the run calls it,
 * one call at a time.
 */
void progress_take(const char *result);

/* Ends the display, so that what follows starts on a line of its own. */
void progress_end(void);

#endif
