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

struct Int {
  template <typename... Values>
  static jint call(JNIEnv *jni, jobject object, jmethodID method, Values... values) {
    return jni->functions->CallIntMethod(jni, object, method, values...);
  }
  static int deliver(JNIEnv *, jint result) { return result; }
};
template <>
struct JavaType<Int> {
  static constexpr Text name{"I"};
};

struct Boolean {
  template <typename... Values>
  static jboolean call(JNIEnv *jni, jobject object, jmethodID method, Values... values) {
    return jni->functions->CallBooleanMethod(jni, object, method, values...);
  }
  static int deliver(JNIEnv *, jboolean result) { return result ? 1 : 0; }
};
template <>
struct JavaType<Boolean> {
  static constexpr Text name{"Z"};
};

// A Java long, of which the caller gets the low 32 bits.
struct LowInt {
  template <typename... Values>
  static jlong call(JNIEnv *jni, jobject object, jmethodID method, Values... values) {
    return jni->functions->CallLongMethod(jni, object, method, values...);
  }
  static int deliver(JNIEnv *, jlong result) { return static_cast<int>(result); }
};
template <>
struct JavaType<LowInt> {
  static constexpr Text name{"J"};
};

struct Void {
  template <typename... Values>
  static int call(JNIEnv *jni, jobject object, jmethodID method, Values... values) {
    jni->functions->CallVoidMethod(jni, object, method, values...);
    return VANTIRO_OK;
  }
  static int deliver(JNIEnv *, int ok) { return ok; }
};
template <>
struct JavaType<Void> {
  static constexpr Text name{"V"};
};

struct ObjectResult {
  template <typename... Values>
  static jobject call(JNIEnv *jni, jobject object, jmethodID method, Values... values) {
    return jni->functions->CallObjectMethod(jni, object, method, values...);
  }
};

// A string whose null is delivered as status 0 and size 0.
struct NothingOnNull : ObjectResult, CallerBuffer {
  using CallerBuffer::CallerBuffer;
  int deliver(JNIEnv *jni, jobject result) const;
};
template <>
struct JavaType<NothingOnNull> {
  static constexpr Text name{"Ljava/lang/String;"};
};

// A string whose null is delivered as the empty string.
struct EmptyOnNull : NothingOnNull {
  using NothingOnNull::NothingOnNull;
  int deliver(JNIEnv *jni, jobject result) const;
};
template <>
struct JavaType<EmptyOnNull> : JavaType<NothingOnNull> {};

}  // namespace vantiro
