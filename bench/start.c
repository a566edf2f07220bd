/*
 * The start of Java and of the management object, once for each process:
 *
 * start library LIBRARY                by vantiro_init
 * start by_hand RUNTIME DIRECTORY      with the same options and look-ups, by hand
 *
 * Prints the milliseconds of it, and of loading the library and calling it once before.
 */
#define _DEFAULT_SOURCE

#include <dlfcn.h>
#include <jni.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <time.h>

static double now(void) {
  struct timespec time;
  clock_gettime(CLOCK_MONOTONIC, &time);
  return (double)time.tv_sec * 1e3 + (double)time.tv_nsec / 1e6;
}

static void fail(const char *what) {
  const char *why = dlerror();
  fprintf(stderr, "start: %s failed: %s\n", what, why ? why : "");
  exit(EXIT_FAILURE);
}

static void *symbol(void *library, const char *name) {
  void *found = dlsym(library, name);
  if (!found) fail(name);
  return found;
}

static void by_library(const char *path) {
  char text[100];
  unsigned int size = sizeof text;
  const double begin = now();
  void *library = dlopen(path, RTLD_LAZY);
  if (!library) fail(path);
  int (*describe)(int, char *, unsigned int *);
  *(void **)&describe = symbol(library, "vantiro_describeStatusCode");
  if (describe(0, text, &size) < 0) fail("the first call");
  const double loaded = now();
  int (*init)(void);
  *(void **)&init = symbol(library, "vantiro_init");
  if (init() < 0) fail("vantiro_init");
  printf("%.4f %.4f\n", loaded - begin, now() - loaded);
}

static void by_hand(const char *path, const char *directory) {
  const double begin = now();
  void *library = dlopen(path, RTLD_LAZY);
  if (!library) fail(path);
  jint (*create)(JavaVM **, void **, void *);
  *(void **)&create = symbol(library, "JNI_CreateJavaVM");
  char class_path[3 * 4096 + 100];
  snprintf(class_path, sizeof class_path,
           "-Djava.class.path=%s/vantiro.jar:%s/commons-codec-1.3.jar:%s/xmlrpc-2.0.jar", directory,
           directory, directory);
  char heap[] = "-Xmx128M";
  char management[] = "-Dcom.sun.management.jmxremote";
  JavaVMOption options[] = {{class_path, NULL}, {heap, NULL}, {management, NULL}};
  JavaVMInitArgs arguments = {JNI_VERSION_1_4, 3, options, JNI_TRUE};
  JavaVM *machine;
  JNIEnv *jni;
  if (create(&machine, (void **)&jni, &arguments) != JNI_OK) fail("JNI_CreateJavaVM");
  jclass type = (*jni)->FindClass(jni, "fi/vantiro/user/ManagementImpl");
  if (!type) fail("FindClass");
  type = (*jni)->NewGlobalRef(jni, type);
  jmethodID constructor = (*jni)->GetMethodID(jni, type, "<init>", "()V");
  jobject object = (*jni)->NewGlobalRef(jni, (*jni)->NewObject(jni, type, constructor));
  jmethodID init = (*jni)->GetMethodID(jni, type, "initFile", "()I");
  if ((*jni)->CallIntMethod(jni, object, init) < 0) fail("initFile");
  printf("0 %.4f\n", now() - begin);
}

int main(int argc, char **argv) {
  if (argc == 3 && strcmp(argv[1], "library") == 0) {
    by_library(argv[2]);
  } else if (argc == 4 && strcmp(argv[1], "by_hand") == 0) {
    by_hand(argv[2], argv[3]);
  } else {
    return 2;
  }
  fflush(stdout);
  /* How a machine ends is not what is measured. */
  _Exit(EXIT_SUCCESS);
}
