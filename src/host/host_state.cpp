#include "host/host_state.h"

JavaVM *jvm;
JNIEnv *env;
jclass cls;
jobject sgc;
jclass pwcls;
jobject pwobj;
void *jvmlibHandle;
void (*vantiro_peach_intermediate_callback_fun)(const char *text);
