#define _POSIX_C_SOURCE 200809L

#include "pi_progress.h"

#include <math.h>
#include <stdio.h>
#include <unistd.h>

enum { BAR = 32 };

static struct counts jobs[JOBS];
static long long samples_of_a_job;
static int jobs_done;
static int on_terminal;

double pi_of(struct counts counts) { return 4.0 * (double)counts.inside / (double)counts.samples; }

double standard_error_of(struct counts counts) {
  const double share = (double)counts.inside / (double)counts.samples;
  return 4.0 * sqrt(share * (1.0 - share) / (double)counts.samples);
}

static struct counts sum_of_jobs(void) {
  struct counts sum = {0, 0};
  for (int i = 0; i < JOBS; ++i) {
    sum.inside += jobs[i].inside;
    sum.samples += jobs[i].samples;
  }
  return sum;
}

static void draw_bar(struct counts sum) {
  const int filled = (int)(BAR * sum.samples / (samples_of_a_job * JOBS));
  printf("\r[%.*s%*s] %2d of %d jobs done   pi is about %.6f", filled,
         "================================", BAR - filled, "", jobs_done, JOBS, pi_of(sum));
  fflush(stdout);
}

void progress_start(long long samples) {
  samples_of_a_job = samples;
  on_terminal = isatty(STDOUT_FILENO);
}

void progress_take(const char *result) {
  int job;
  struct counts counts;
  if (sscanf(result, "%d:%lld %lld", &job, &counts.inside, &counts.samples) != 3) return;
  if (job < 1 || job > JOBS || counts.samples < 1) return;

  jobs[job - 1] = counts;
  if (counts.samples == samples_of_a_job) ++jobs_done;
  if (on_terminal) {
    draw_bar(sum_of_jobs());
  } else if (counts.samples == samples_of_a_job) {
    printf("job %2d done, %2d of %d; pi is about %.6f\n", job, jobs_done, JOBS,
           pi_of(sum_of_jobs()));
    fflush(stdout);
  }
}

void progress_end(void) {
  if (on_terminal) printf("\n");
}
