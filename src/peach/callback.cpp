// Intermediate results: the Java handler that brings them here, and their way to the caller.
#include "bridge/call.h"
#include "bridge/characters.h"
#include "vantiro/peach.h"

using namespace vantiro;
using Handler = Object<"Lfi/vantiro/user/IntermediateResultHandler;">;

namespace {

// Binding the same function again is harmless, so every registration binds it.
void bind_callback(JNIEnv *jni, jclass caller) {
  char name[] = "func";
  char signature[] = "(Ljava/lang/String;)V";
  const JNINativeMethod method = {name, signature,
                                  reinterpret_cast<void *>(&vantiro_peach_intermediate_callback)};
  jni->RegisterNatives(caller, &method, 1);
}

}  // namespace

int vantiro_peach_setIntermediateResultHandler(int handle, void (*callback)(const char *text)) {
  const Target target = peach_object();
  JNIEnv *const jni = enter(target);
  if (!jni) return VANTIRO_ERROR_NOT_INITIALIZED;

  // What an earlier look-up left pending must not be taken for a failure of the registration.
  jni->ExceptionClear();
  const jclass caller = jni->FindClass("fi/vantiro/user/NativeFunctionCaller");
  if (!caller) {
    threw(jni);
    return VANTIRO_ERROR_UNCAUGHT_EXCEPTION;
  }
  const jmethodID constructor = jni->GetMethodID(caller, "<init>", "()V");
  if (!constructor) return VANTIRO_ERROR_METHOD_NOT_FOUND;
  const Handler handler{jni->functions->NewObject(jni, caller, constructor)};
  bind_callback(jni, caller);
  if (threw(jni)) return VANTIRO_ERROR_UNCAUGHT_EXCEPTION;

  const int status =
      clear_then_test(jni, target, Void{}, "setIntermediateResultHandler", handle, handler);
  // Stored last: results must not reach a function whose registration Java refused.
  if (status == VANTIRO_OK) store(vantiro_peach_intermediate_callback_fun, callback);
  return status;
}

void vantiro_peach_intermediate_callback(JNIEnv *jni, jobject, jstring text) {
  const Characters result(jni, text);
  if (!result) {
    // Without memory for the characters an exception is pending, which is not the Java side's.
    if (text) jni->ExceptionClear();
    return;
  }
  void (*const callback)(const char *) = load(vantiro_peach_intermediate_callback_fun);
  if (callback) callback(result.get());
}
