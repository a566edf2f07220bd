// Ending the use of the management library, and the runtime's handles for programs that want them.
#include "bridge/call.h"
#include "vantiro/runtime.h"
#include "vantiro/status.h"

using namespace vantiro;

namespace {

// The parallel-each object is forgotten before Java is called, so also when the call fails.
template <typename... Flags>
int unload(Flags... flags) {
  const Target target = management_object();
  if (!ready(target)) return VANTIRO_ERROR_NOT_INITIALIZED;
  store<jclass>(pwcls, nullptr);
  store<jobject>(pwobj, nullptr);
  return management::call(Int{}, "unload", flags...);
}

}  // namespace

int vantiro_unload(unsigned char flag) { return unload(flag); }

int vantiro_unload2(unsigned char flag1, unsigned char flag2) { return unload(flag1, flag2); }

JNIEnv *vantiro_getJNIEnv(void) { return env; }

JavaVM *vantiro_getJavaVM(void) { return jvm; }

void vantiro_debug(void) {}

void vantiro_debug2(void) {}
