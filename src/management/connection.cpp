// Connection, diagnostics and queries of the runtime.
#include "vantiro/connection.h"

#include "bridge/call.h"
#include "bridge/status_texts.h"
#include "host/host_state.h"

namespace vantiro {

// A reference of the calling thread, handed out as it is.
template <typename Type>
struct Reference : ObjectResult {
  jobject *out;
  explicit Reference(jobject *place) : out(place) {}
  int deliver(JNIEnv *, jobject reference) const {
    *out = reference;
    return VANTIRO_OK;
  }
};

struct Plugin;
template <>
struct JavaType<Reference<Plugin>> {
  static constexpr Text name{"Lfi/vantiro/user/VantiroManagerPlugin;"};
};
template <>
struct JavaType<Reference<jclass>> {
  static constexpr Text name{"Ljava/lang/Class;"};
};

}  // namespace vantiro

using namespace vantiro;
using management::call;

int vantiro_open(void) { return call(Int{}, "open"); }

int vantiro_close(int handle) { return call(Int{}, "close", handle); }

int vantiro_ready(int handle) { return call(Int{}, "ready", handle); }

int vantiro_cleanup(int handle, int value) { return call(Int{}, "cleanup", handle, value); }

int vantiro_setLogLevel(const char *level) { return call(Int{}, "setLogLevel", level); }

// The one management call that leaves no exception pending when its method is missing.
int vantiro_printStatistics(int handle) {
  const Target target = management_object();
  JNIEnv *const jni = enter(target);
  if (!jni) return VANTIRO_ERROR_NOT_INITIALIZED;
  return clear_then_test(jni, target, Void{}, "printStatistics", handle);
}

int vantiro_getStatisticsString(int handle, char *buffer, unsigned int *size) {
  return call(NothingOnNull(buffer, size), "getStatisticsString", handle);
}

int vantiro_getUserLogin(char *buffer, unsigned int *size) {
  return call(EmptyOnNull(buffer, size), "getUserLogin");
}

int vantiro_getTempDir(char *buffer, unsigned int *size) {
  return call(EmptyOnNull(buffer, size), "getTempDir");
}

int vantiro_getPlugin(const char *name, jobject *plugin) {
  const int status = call(Reference<Plugin>(plugin), "getPlugin", name);
  if (status == VANTIRO_ERROR_UNCAUGHT_EXCEPTION) *plugin = nullptr;
  return status;
}

jclass vantiro_getPluginClass(const char *name) {
  jobject type = nullptr;
  call(Reference<jclass>(&type), "getPluginClass", name);
  return static_cast<jclass>(type);
}

int vantiro_getPluginConf(const char *name, const char *key, char *buffer, unsigned int *size) {
  const EmptyOnNull out(buffer, size);
  return explained(call(out, "getPluginConf", name, key), out);
}

// Asks the Java platform itself, so a started runtime is all it needs.
int vantiro_getJavaSystemProperty(const char *key, char *buffer, unsigned int *size) {
  const NothingOnNull out(buffer, size);
  JNIEnv *const jni = env ? attach() : nullptr;
  if (!jni) return VANTIRO_ERROR_NOT_INITIALIZED;
  const jclass system = jni->FindClass("java/lang/System");
  const jmethodID method =
      system
          ? jni->GetStaticMethodID(system, "getProperty", descriptor<NothingOnNull, const char *>())
          : nullptr;
  jni->ExceptionClear();
  if (!method) return VANTIRO_ERROR_METHOD_NOT_FOUND;
  const jobject value =
      jni->functions->CallStaticObjectMethod(jni, system, method, to_java(jni, key));
  if (threw(jni)) return VANTIRO_ERROR_UNCAUGHT_EXCEPTION;
  return out.deliver(jni, value);
}
