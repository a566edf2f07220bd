// The four initialisers: a new management object, and its Java initialiser called.
#include "bridge/call.h"
#include "host/runtime.h"
#include "vantiro/runtime.h"
#include "vantiro/status.h"

using namespace vantiro;

namespace {

// Everything goes through the host's `env`, which from here on is that of the calling thread.
int enter_runtime() {
  if (!env) return vantiro_initJava();
  JNIEnv *const jni = attach();
  if (!jni) return VANTIRO_ERROR_NOT_INITIALIZED;
  env = jni;
  return VANTIRO_OK;
}

int construct() {
  const jmethodID constructor = env->GetMethodID(cls, "<init>", "()V");
  if (!constructor) {
    abandon_machine();
    return VANTIRO_ERROR_CONSTRUCTOR_MISSING;
  }
  sgc = new_global_reference(env, env->functions->NewObject(env, cls, constructor));
  return sgc ? VANTIRO_OK : VANTIRO_ERROR_INITIALIZATION;
}

template <typename... Arguments>
int initialize(const char *name, Arguments... arguments) {
  int status = enter_runtime();
  if (status == VANTIRO_OK) status = construct();
  if (status != VANTIRO_OK) return status;

  const jmethodID initializer = env->GetMethodID(cls, name, descriptor<Int, Arguments...>());
  if (!initializer) return VANTIRO_ERROR_INITIALIZER_MISSING;
  env->ExceptionClear();
  const jint result = invoke<Int>(env, sgc, initializer, with_arrays(env, arguments...));
  return threw(env) ? VANTIRO_ERROR_UNCAUGHT_EXCEPTION : result;
}

}  // namespace

int vantiro_init(void) { return initialize("initFile"); }

int vantiro_initFile(const char *file) { return initialize("initFile", file); }

int vantiro_initFileWithPassword(const char *file, const char *password) {
  return initialize("initFile", file, password);
}

int vantiro_initWithoutFile(const char *s1, const char *s2, const char *s3, const char *s4, int i5,
                            const char *s6, const char *s7, int i8, int i9, const char *s10,
                            const char *s11) {
  return initialize("init", s1, s2, s3, s4, i5, s6, s7, i8, i9, s10, s11);
}
