// The parallel-each object, the handles of runs, and what is done with a run.
#include "bridge/call.h"
#include "vantiro/peach.h"

using namespace vantiro;
using peach::call;
using PeachWrapper = Reference<"Lfi/vantiro/user/PeachWrapper;">;

namespace {

// Obtains the parallel-each object from the management object, and keeps it for every thread.
int fetch_peach_object(JNIEnv *jni, Target management, Target &peach) {
  const jmethodID method =
      jni->GetMethodID(management.type, "getPeachWrapper", descriptor<PeachWrapper>());
  jni->ExceptionClear();
  if (!method) return VANTIRO_ERROR_METHOD_NOT_FOUND;
  peach.type = new_global_reference(jni, jni->FindClass("fi/vantiro/user/PeachWrapper"));
  store(pwcls, peach.type);
  if (!peach.type) {
    threw(jni);
    return VANTIRO_ERROR_UNCAUGHT_EXCEPTION;
  }
  const jobject wrapper = PeachWrapper::call(jni, management.object, method);
  peach.object = threw(jni) ? nullptr : new_global_reference(jni, wrapper);
  store(pwobj, peach.object);
  return peach.object ? VANTIRO_OK : VANTIRO_ERROR_UNCAUGHT_EXCEPTION;
}

}  // namespace

int vantiro_peach_handle(void) {
  const Target management = management_object();
  JNIEnv *const jni = enter(management);
  if (!jni) return VANTIRO_ERROR_NOT_INITIALIZED;
  // Another thread may unload meanwhile, so what was fetched is what is called.
  Target peach = peach_object();
  if (!peach.type || !peach.object) {
    const int status = fetch_peach_object(jni, management, peach);
    if (status != VANTIRO_OK) return status;
  }
  return clear_then_test(jni, peach, Int{}, "get");
}

int vantiro_peach_execute(int handle) { return call(Int{}, "execute", handle); }

int vantiro_peach_postProcessed(int handle, int value) {
  return call(Void{}, "postProcessed", handle, value);
}

int vantiro_peach_done(int handle) { return call(Void{}, "done", handle); }

int vantiro_peach_getProjectHandle(int handle) { return call(Int{}, "getProjectHandle", handle); }

int vantiro_peach_getProjectId(int handle) { return call(Int{}, "getProjectId", handle); }

int vantiro_peach_sourcesChanged(int handle) { return call(Boolean{}, "sourcesChanged", handle); }

int vantiro_peach_getLastErrorMessage(int handle, char *buffer, unsigned int *size) {
  return call(String({buffer, size}, nothing_on_null), "getLastErrorMessage", handle);
}

int vantiro_peach_nextFile(int handle, char *buffer, unsigned int *size) {
  return call(String({buffer, size}, nothing_on_null), "nextFile", handle);
}
