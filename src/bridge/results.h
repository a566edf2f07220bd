// What becomes of the results of Java methods: for each kind its place in a descriptor, the JNI
// function that calls such a method (`call`), and the way to the caller (`deliver`).
#pragma once

#include <jni.h>

#include "bridge/caller_buffer.h"
#include "bridge/descriptor.h"
#include "vantiro/status.h"

namespace vantiro {

// The variadic functions of the JNI table itself are called: the C++ wrappers of <jni.h> take a
// detour through a va_list.
template <auto Function>
struct CalledBy {
  template <typename... Values>
  static auto call(JNIEnv *jni, jobject object, jmethodID method, Values... values) {
    return (jni->functions->*Function)(jni, object, method, values...);
  }
};

struct Int : CalledBy<&JNINativeInterface_::CallIntMethod> {
  static constexpr Text name{"I"};
  static int deliver(JNIEnv *, jint result) { return result; }
};

struct Boolean : CalledBy<&JNINativeInterface_::CallBooleanMethod> {
  static constexpr Text name{"Z"};
  static int deliver(JNIEnv *, jboolean result) { return result ? 1 : 0; }
};

// A Java long, of which the caller gets the low 32 bits.
struct LowInt : CalledBy<&JNINativeInterface_::CallLongMethod> {
  static constexpr Text name{"J"};
  static int deliver(JNIEnv *, jlong result) { return static_cast<int>(result); }
};

struct Void {
  static constexpr Text name{"V"};
  template <typename... Values>
  static int call(JNIEnv *jni, jobject object, jmethodID method, Values... values) {
    jni->functions->CallVoidMethod(jni, object, method, values...);
    return VANTIRO_OK;
  }
  static int deliver(JNIEnv *, int ok) { return ok; }
};

// A reference of the calling thread to an object of the type with this descriptor, handed out as
// it is.
template <Text Type>
struct Reference : CalledBy<&JNINativeInterface_::CallObjectMethod> {
  static constexpr auto name = Type;
  jobject *out;
  explicit Reference(jobject *place) : out(place) {}
  int deliver(JNIEnv *, jobject reference) const {
    *out = reference;
    return VANTIRO_OK;
  }
};

// What a caller gets for a string that is null: status 0 and size 0, or the empty string.
enum NullRule { nothing_on_null, empty_on_null };

struct String : CalledBy<&JNINativeInterface_::CallObjectMethod> {
  static constexpr Text name{"Ljava/lang/String;"};
  CallerBuffer out;
  NullRule rule;
  String(CallerBuffer place, NullRule null_rule) : out(place), rule(null_rule) {}
  int deliver(JNIEnv *jni, jobject result) const;
};

}  // namespace vantiro
