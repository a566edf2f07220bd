// What the parameters of the exported functions become in Java: a type, its place in a descriptor
// and its conversion stand together. Values are converted by `convert`, lists by `arrays`, which
// gives one Java array or several.
#pragma once

#include <jni.h>

#include <tuple>

#include "bridge/descriptor.h"

namespace vantiro {

template <>
struct JavaType<jint> {
  static constexpr Text name{"I"};
  static jint convert(JNIEnv *, jint value) { return value; }
};

template <>
struct JavaType<jboolean> {
  static constexpr Text name{"Z"};
  static jboolean convert(JNIEnv *, jboolean flag) { return flag; }
};

// A 32-bit parameter of a Java method that takes 64 bits; the sign is kept.
struct Long {
  int value;
};
template <>
struct JavaType<Long> {
  static constexpr Text name{"J"};
  static jlong convert(JNIEnv *, Long number) { return number.value; }
};

template <>
struct JavaType<const char *> {
  static constexpr Text name{"Ljava/lang/String;"};
  static jstring convert(JNIEnv *jni, const char *text) {
    return text ? jni->NewStringUTF(text) : nullptr;
  }
};

// An object that Java gave, of the type with this descriptor.
template <Text Type>
struct Object {
  jobject object;
};
template <Text Type>
struct JavaType<Object<Type>> {
  static constexpr auto name = Type;
  static jobject convert(JNIEnv *, Object<Type> given) { return given.object; }
};

// An array of the strings. Every slot starts as the empty string; null when there is nothing that
// Java could be given.
jobjectArray to_array(JNIEnv *jni, int count, const char **list);

struct StringList {
  int count;
  const char **list;
};
template <>
struct JavaType<StringList> {
  static constexpr Text name{"[Ljava/lang/String;"};
  static std::tuple<jobjectArray> arrays(JNIEnv *jni, StringList strings) {
    return {to_array(jni, strings.count, strings.list)};
  }
};

// Two lists one behind the other in one array; they become two consecutive Java parameters.
struct PairedStringList {
  int count1;
  int count2;
  const char **list;
};
template <>
struct JavaType<PairedStringList> {
  static constexpr Text name{"[Ljava/lang/String;[Ljava/lang/String;"};
  static std::tuple<jobjectArray, jobjectArray> arrays(JNIEnv *jni, PairedStringList strings);
};

}  // namespace vantiro
