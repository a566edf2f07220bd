/* A host program in the two languages, with jni.h before the library's header, behind it, or not at
 * all. It reads the host state as the library wrote it. */
#ifdef JNI_BEFORE
#include <jni.h>
#endif
#include <vantiro.h>
#ifdef JNI_AFTER
#include <jni.h>
#endif

#include <stdio.h>

static int faults = 0;

static void check(int holds, const char *what) {
  if (holds) return;
  printf("not so: %s\n", what);
  ++faults;
}
#define CHECK(what) check((what) ? 1 : 0, #what)

#ifndef JNI_NONE
/* The types are those of jni.h: nothing is cast here. */
static void use_the_machine(void) {
  JavaVM *machine = vantiro_getJavaVM();
  JNIEnv *jni = vantiro_getJNIEnv();
  jclass type = cls;
  jobject plugin = sgc;
#ifdef __cplusplus
  CHECK(machine->GetEnv((void **)&jni, JNI_VERSION_1_4) == JNI_OK);
  type = jni->GetObjectClass(type);
#else
  CHECK((*machine)->GetEnv(machine, (void **)&jni, JNI_VERSION_1_4) == JNI_OK);
  type = (*jni)->GetObjectClass(jni, type);
#endif
  CHECK(jni == env && type);
  CHECK(vantiro_getPlugin("", &plugin) == VANTIRO_ERROR_NOT_INITIALIZED);
}
#else
static void use_the_machine(void) {
  vantiro_JavaVM *machine = vantiro_getJavaVM();
  vantiro_JNIEnv *jni = vantiro_getJNIEnv();
  vantiro_jclass type = vantiro_getPluginClass("");
  vantiro_jobject plugin = sgc;
  CHECK(machine && jni && !type);
  CHECK(vantiro_getPlugin("", &plugin) == VANTIRO_ERROR_NOT_INITIALIZED);
}
#endif

int main(void) {
  /* Taking the address makes a program of fixed position give the function a place of its own. */
  int (*volatile start)(void) = &vantiro_initJava;

  CHECK(!jvm && !env && !cls && !jvmlibHandle);
  CHECK(start() == VANTIRO_OK);
  CHECK(jvm && jvm == vantiro_getJavaVM());
  CHECK(env && env == vantiro_getJNIEnv());
  CHECK(cls && jvmlibHandle);
  CHECK(!sgc && !pwcls && !pwobj && !vantiro_peach_intermediate_callback_fun);
  if (!faults) use_the_machine();
  return faults;
}
