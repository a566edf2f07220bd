/* A library that has only the first FUNCTIONS of what a Java runtime has to have. */
#include <jni.h>

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
