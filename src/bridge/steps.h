// The steps that calls of every kind are made of.
#pragma once

#include <jni.h>

namespace vantiro {

// A Java object that is called, and the class on which its methods are looked up.
struct Target {
  jobject object;
  jclass type;
};

Target management_object();
Target peach_object();

// Attaches the calling thread and gives its JNI environment; null when the machine refuses.
JNIEnv *attach();

// Whether the target is there and the runtime is started.
bool ready(Target target);

// Guard and attachment of a call: null when either fails.
JNIEnv *enter(Target target);

// Whether Java threw. The exception is described on standard error and cleared.
bool threw(JNIEnv *jni);

// Makes a reference live across threads; null stays null.
template <typename Reference>
Reference share(JNIEnv *jni, Reference local) {
  return local ? static_cast<Reference>(jni->NewGlobalRef(local)) : nullptr;
}

}  // namespace vantiro
