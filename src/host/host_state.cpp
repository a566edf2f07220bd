// The host state: the eight exported variables and nothing beside them. Who writes which is told
// where each is declared.
#include <jni.h>

#include "vantiro/runtime.h"

JavaVM *jvm;
JNIEnv *env;
jclass cls;
jobject sgc;
jclass pwcls;
jobject pwobj;
void *jvmlibHandle;
void (*vantiro_peach_intermediate_callback_fun)(const char *text);
