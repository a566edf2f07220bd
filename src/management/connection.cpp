// Connection, diagnostics and queries of the runtime.
#include "vantiro/connection.h"

#include "bridge/call.h"
#include "bridge/status_texts.h"

using namespace vantiro;
using management::call;
using Plugin = Reference<"Lfi/vantiro/user/VantiroManagerPlugin;">;
using PluginClass = Reference<"Ljava/lang/Class;">;

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
  return call(String({buffer, size}, nothing_on_null), "getStatisticsString", handle);
}

int vantiro_getUserLogin(char *buffer, unsigned int *size) {
  return call(String({buffer, size}, empty_on_null), "getUserLogin");
}

int vantiro_getTempDir(char *buffer, unsigned int *size) {
  return call(String({buffer, size}, empty_on_null), "getTempDir");
}

int vantiro_getPlugin(const char *name, jobject *plugin) {
  const int status = call(Plugin(plugin), "getPlugin", name);
  if (status == VANTIRO_ERROR_UNCAUGHT_EXCEPTION) *plugin = nullptr;
  return status;
}

jclass vantiro_getPluginClass(const char *name) {
  jobject type = nullptr;
  call(PluginClass(&type), "getPluginClass", name);
  return static_cast<jclass>(type);
}

int vantiro_getPluginConf(const char *name, const char *key, char *buffer, unsigned int *size) {
  const CallerBuffer out(buffer, size);
  return explained(call(String(out, empty_on_null), "getPluginConf", name, key), out);
}

// Asks the Java platform itself, so a started runtime is all it needs.
int vantiro_getJavaSystemProperty(const char *key, char *buffer, unsigned int *size) {
  const String out({buffer, size}, nothing_on_null);
  JNIEnv *const jni = env ? attach() : nullptr;
  if (!jni) return VANTIRO_ERROR_NOT_INITIALIZED;
  const jclass system = jni->FindClass("java/lang/System");
  const jmethodID method =
      system ? jni->GetStaticMethodID(system, "getProperty", descriptor<String, const char *>())
             : nullptr;
  jni->ExceptionClear();
  if (!method) return VANTIRO_ERROR_METHOD_NOT_FOUND;
  const jobject value =
      jni->functions->CallStaticObjectMethod(jni, system, method, to_java(jni, key));
  if (threw(jni)) return VANTIRO_ERROR_UNCAUGHT_EXCEPTION;
  return out.deliver(jni, value);
}
