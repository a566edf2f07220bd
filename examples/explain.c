#include "explain.h"

#include <stdio.h>
#include <stdlib.h>
#include <vantiro.h>

/* What a person can do about the failures of a start. */
static const char *cure_of(int status) {
  switch (status) {
    case VANTIRO_ERROR_RUNTIME_NOT_FOUND:
      return "The loader's reason stands above. Name a libjvm.so of this program's word size as "
             "JVMPATH=... in VantiroDLL.conf, beside libvantiro.so.";
    case VANTIRO_ERROR_METHOD_NOT_FOUND:
    case VANTIRO_ERROR_CONSTRUCTOR_MISSING:
      return "vantiro.jar must lie beside libvantiro.so, and must be of a version that has what is "
             "called here.";
    case VANTIRO_ERROR_NOT_INITIALIZED:
      return "The Java machine did not start, or was not started yet. It starts once in a process.";
    case VANTIRO_ERROR_UNCAUGHT_EXCEPTION:
      return "The Java machine has described the exception above.";
    default:
      return NULL;
  }
}

/* What the Java side says about its last failure; empty when it says nothing. */
static const char *last_error(int run) {
  static char text[4096];
  unsigned int size = sizeof text;
  const int status = run > 0 ? vantiro_peach_getLastErrorMessage(run, text, &size)
                             : vantiro_getLastErrorMessage(text, &size);
  return status == VANTIRO_OK && size > 0 ? text : "";
}

void explain(const char *tried, int status, int run) {
  char text[256] = "";
  unsigned int size = sizeof text;
  const char *details = last_error(run);
  const char *cure = cure_of(status);

  fflush(stdout); /* the loader's words may be waiting there */
  vantiro_describeStatusCode(status, text, &size);
  fprintf(stderr, "%s failed with status %d: %s\n", tried, status, text);
  if (*details) fprintf(stderr, "%s\n", details);
  if (cure) fprintf(stderr, "%s\n", cure);
}

void require(const char *tried, int status, int run) {
  if (status >= 0) return;
  explain(tried, status, run);
  exit(EXIT_FAILURE);
}

int printed(void) {
  if (fflush(stdout) == 0 && !ferror(stdout)) return EXIT_SUCCESS;
  perror("standard output");
  return EXIT_FAILURE;
}
