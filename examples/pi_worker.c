/*
 * The job of the pi example: random points in the unit square, and how many lie in the circle.
 *
 * It is told its number and the number of samples in its environment, prints how far it is from
 * time to time, and leaves the counts in the file pi.txt.
 */
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>

/* Vigna's splitmix64: good enough for sampling, and its streams can be started anywhere. */
static uint64_t next_random(uint64_t *state) {
  uint64_t z = (*state += UINT64_C(0x9e3779b97f4a7c15));
  z = (z ^ (z >> 30)) * UINT64_C(0xbf58476d1ce4e5b9);
  z = (z ^ (z >> 27)) * UINT64_C(0x94d049bb133111eb);
  return z ^ (z >> 31);
}

static long long number_of(const char *name) {
  const char *text = getenv(name);
  const long long number = text ? atoll(text) : 0;
  if (number > 0) return number;
  fprintf(stderr, "pi_worker: %s must be a positive number, it is %s\n", name,
          text ? text : "not set");
  exit(2);
}

int main(void) {
  const long long samples = number_of("VANTIRO_PARAM_samples");
  const long long reports = samples < 20 ? samples : 20;
  uint64_t state = (uint64_t)number_of("VANTIRO_JOB") << 40;
  long long inside = 0;
  FILE *result;

  for (long long i = 1; i <= samples; ++i) {
    const uint64_t bits = next_random(&state);
    const uint64_t x = bits & UINT32_MAX;
    const uint64_t y = bits >> 32;
    /* The squares are halved so that their sum fits into 64 bits. */
    inside += x * x / 2 + y * y / 2 < UINT64_C(1) << 63;
    if (i % (samples / reports) == 0) {
      printf("%lld %lld\n", inside, i);
      fflush(stdout);
    }
  }

  result = fopen("pi.txt", "w");
  if (!result || fprintf(result, "%lld %lld\n", inside, samples) < 0 || fclose(result) != 0) {
    perror("pi_worker: pi.txt");
    return 1;
  }
  return 0;
}
