/* A library that has only the first FUNCTIONS of what a Java runtime has to have. */
#include <jni.h>

/* What a runtime defines for itself must not get in the way of the host's own names. */
extern int name_of_a_runtime;
int name_of_a_runtime = 1;

#if FUNCTIONS > 0
jint JNI_CreateJavaVM(JavaVM **machine, void **env, void *arguments) {
  (void)machine, (void)env, (void)arguments;
  return JNI_ERR;
}
#endif

#if FUNCTIONS > 1
jint JNI_GetDefaultJavaVMInitArgs(void *arguments) {
  (void)arguments;
  return JNI_ERR;
}
#endif
