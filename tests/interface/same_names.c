/* A host program with functions of its own that are called like the library's. */
#include <stddef.h>
#include <vantiro/projects.h>
#include <vantiro/runtime.h>
#include <vantiro/status.h>

static int calls = 0;

int vantiro_createJob2(int project, int count, const char **list) {
  (void)project, (void)count, (void)list;
  return ++calls;
}

int vantiro_findJavaInPath(char *buffer) {
  (void)buffer;
  return --calls;
}

int vantiro_initJava(void) { return ++calls; }

int main(void) {
  /* Java refuses the file, but is started for it. */
  const int started = vantiro_initFile(NULL);
  if (calls != 0 || started == 1 || !vantiro_getJNIEnv()) return 1;
  return vantiro_createJob(1, 1, "") == 1 || calls != 0 ? 2 : 0;
}
