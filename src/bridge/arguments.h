// What the parameters of the exported functions become in Java: a type, its place in a descriptor
// and its conversion stand together.
//
// The conversion has two steps, because the management calls build their lists before they clear
// an earlier exception, and everything else after: `build_arrays` turns lists into Java arrays and
// passes the rest through, `to_java` converts what is left.
#pragma once

#include <jni.h>

#include <tuple>

#include "bridge/descriptor.h"

namespace vantiro {

template <>
struct JavaType<jint> {
  static constexpr Text name{"I"};
};
inline jint to_java(JNIEnv *, jint value) { return value; }

template <>
struct JavaType<jboolean> {
  static constexpr Text name{"Z"};
};
inline jboolean to_java(JNIEnv *, jboolean flag) { return flag; }

// A 32-bit parameter of a Java method that takes 64 bits; the sign is kept.
struct Long {
  int value;
};
template <>
struct JavaType<Long> {
  static constexpr Text name{"J"};
};
inline jlong to_java(JNIEnv *, Long number) { return number.value; }

template <>
struct JavaType<const char *> {
  static constexpr Text name{"Ljava/lang/String;"};
};
inline jstring to_java(JNIEnv *jni, const char *text) {
  return text ? jni->NewStringUTF(text) : nullptr;
}

struct StringList {
  int count;
  const char **list;
};
template <>
struct JavaType<StringList> {
  static constexpr Text name{"[Ljava/lang/String;"};
};
std::tuple<jobjectArray> build_arrays(JNIEnv *jni, StringList strings);

// Two lists one behind the other in one array; they become two consecutive Java parameters.
struct PairedStringList {
  int count1;
  int count2;
  const char **list;
};
template <>
struct JavaType<PairedStringList> {
  static constexpr Text name{"[Ljava/lang/String;[Ljava/lang/String;"};
};
std::tuple<jobjectArray, jobjectArray> build_arrays(JNIEnv *jni, PairedStringList strings);

inline jobjectArray to_java(JNIEnv *, jobjectArray array) { return array; }

template <typename T>
std::tuple<T> build_arrays(JNIEnv *, T argument) {
  return {argument};
}

}  // namespace vantiro
