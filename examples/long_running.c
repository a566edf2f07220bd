/*
 * Makes a great many calls from one thread, as a program that runs for weeks does, and shows what
 * becomes of its memory. The Java strings of a call live until its thread detaches or until the
 * frame ends that they were made in: with frames the memory stays as it is, without it grows until
 * the machine has none left.
 *
 *   long_running [CALLS] [--without-frames]    CALLS is 1000000 unless told
 */
#include <jni.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>
#include <vantiro.h>

#include "explain.h"

enum { CALLS_OF_A_FRAME = 1000, REFERENCES_OF_A_CALL = 2, CALLS_OF_A_LINE = 100000 };

/* Of this process, in MB. */
static double resident_memory(void) {
  long total = 0, resident = 0;
  FILE *file = fopen("/proc/self/statm", "r");
  if (file && fscanf(file, "%ld %ld", &total, &resident) != 2) resident = 0;
  if (file) fclose(file);
  return (double)resident * (double)sysconf(_SC_PAGESIZE) / 1048576;
}

#define TWENTY "parameter.with.name."
#define HUNDRED TWENTY TWENTY TWENTY TWENTY TWENTY
/* A string of 400 characters for Java, and a short one from it. */
static const char *name = HUNDRED HUNDRED HUNDRED HUNDRED;
static const char *parameter = HUNDRED HUNDRED HUNDRED HUNDRED "=value";

static void make_one_call(int project) {
  char value[16] = "";
  unsigned int size = sizeof value;
  require("getProjectParamValue", vantiro_getProjectParamValue(project, name, value, &size), 0);
  if (strcmp(value, "value") != 0) {
    fprintf(stderr, "the parameter has another value: %s\n", value);
    exit(1);
  }
}

static void make_calls(JNIEnv *jni, int project, int calls) {
  const int references = calls * REFERENCES_OF_A_CALL;
  if (jni && (*jni)->PushLocalFrame(jni, references) != 0) {
    fprintf(stderr, "there is no memory for a frame of %d references\n", references);
    exit(1);
  }
  for (int i = 0; i < calls; ++i) make_one_call(project);
  if (jni) (*jni)->PopLocalFrame(jni, NULL);
}

int main(int count, char **arguments) {
  int frames = 1;
  long calls = 1000000;
  for (int i = 1; i < count; ++i) {
    char *end = NULL;
    if (strcmp(arguments[i], "--without-frames") == 0) {
      frames = 0;
    } else if ((calls = strtol(arguments[i], &end, 10)) < 1 || *end) {
      fprintf(stderr, "usage: long_running [CALLS] [--without-frames]\n");
      return 2;
    }
  }
  require("init", vantiro_init(), 0);
  const int session = vantiro_open();
  require("open", session, 0);
  const int project = vantiro_createProject2(session, 0, "long running", 1, &parameter);
  require("createProject", project, 0);

  /* The initialiser ran in this thread, so this is the thread's own environment. */
  JNIEnv *jni = frames ? vantiro_getJNIEnv() : NULL;
  for (long made = 0; made < calls;) {
    const long left = calls - made;
    const int next = left < CALLS_OF_A_FRAME ? (int)left : CALLS_OF_A_FRAME;
    make_calls(jni, project, next);
    made += next;
    if (made % CALLS_OF_A_LINE == 0 || made == calls) {
      printf("%9ld calls, %6.1f MB resident\n", made, resident_memory());
      fflush(stdout);
    }
  }
  require("removeProject", vantiro_removeProject(project), 0);
  require("unload", vantiro_unload(1), 0);
  return printed();
}
