#include "bridge/steps.h"

#include "host/host_state.h"

namespace vantiro {

Target management_object() {
  return {sgc, cls};
}

Target peach_object() {
  return {pwobj, pwcls};
}

JNIEnv *attach() {
  void *thread_env = nullptr;
  jvm->AttachCurrentThread(&thread_env, nullptr);
  return static_cast<JNIEnv *>(thread_env);
}

bool ready(Target target) {
  return target.object && target.type && env;
}

JNIEnv *enter(Target target) {
  return ready(target) ? attach() : nullptr;
}

bool threw(JNIEnv *jni) {
  if (!jni->ExceptionOccurred()) return false;
  jni->ExceptionDescribe();
  jni->ExceptionClear();
  return true;
}

}  // namespace vantiro
