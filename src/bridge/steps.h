// The steps that calls of every kind are made of. They are inline: a call of its own for each would
// be most of what the library adds to a call.
#pragma once

#include <jni.h>

#include "vantiro/runtime.h"

namespace vantiro {

// The parallel-each object and the callback may be replaced while other threads use them: each
// finds the old one or the new one, whole.
template <typename Pointer>
Pointer load(Pointer &variable) {
  return __atomic_load_n(&variable, __ATOMIC_ACQUIRE);
}
template <typename Pointer>
void store(Pointer &variable, Pointer value) {
  __atomic_store_n(&variable, value, __ATOMIC_RELEASE);
}

// A Java object that is called, and the class on which its methods are looked up.
struct Target {
  jobject object;
  jclass type;
};

inline Target management_object() { return {sgc, cls}; }
inline Target peach_object() { return {load(pwobj), load(pwcls)}; }

// Whether the target is there and the runtime is started.
inline bool ready(Target target) { return target.object && target.type && env; }

// Attaches the calling thread and gives its JNI environment; null when the machine refuses, or when
// there is none because a program with variables of the same names has taken over `env`.
inline JNIEnv *attach() {
  void *thread_env = nullptr;
  if (jvm) jvm->AttachCurrentThread(&thread_env, nullptr);
  return static_cast<JNIEnv *>(thread_env);
}

// Guard and attachment of a call: null when either fails.
inline JNIEnv *enter(Target target) { return ready(target) ? attach() : nullptr; }

// Whether Java threw. The exception is described on standard error and cleared.
inline bool threw(JNIEnv *jni) {
  if (!jni->ExceptionOccurred()) return false;
  jni->ExceptionDescribe();
  jni->ExceptionClear();
  return true;
}

// Makes a reference live across threads; null stays null.
template <typename Reference>
Reference new_global_reference(JNIEnv *jni, Reference local) {
  return local ? static_cast<Reference>(jni->NewGlobalRef(local)) : nullptr;
}

}  // namespace vantiro
