// Lists becoming Java arrays.
#include "bridge/arguments.h"

namespace vantiro {
namespace {

inline bool has_no_strings(int count, const char **list) {
  return count < 0 || (count > 0 && !list);
}

inline jobjectArray make_array(JNIEnv *jni, int count, const char **list) {
  if (has_no_strings(count, list)) return nullptr;
  const jstring initial = jni->NewStringUTF("");
  const jclass string_class = jni->FindClass("java/lang/String");
  return string_class ? jni->NewObjectArray(count, string_class, initial) : nullptr;
}

inline void fill(JNIEnv *jni, jobjectArray array, int count, const char **list) {
  if (!array) return;
  for (int i = 0; i < count; ++i) {
    jni->SetObjectArrayElement(array, i, JavaType<const char *>::convert(jni, list[i]));
  }
}

}  // namespace

jobjectArray to_array(JNIEnv *jni, int count, const char **list) {
  const jobjectArray array = make_array(jni, count, list);
  fill(jni, array, count, list);
  return array;
}

std::tuple<jobjectArray, jobjectArray> JavaType<PairedStringList>::arrays(
    JNIEnv *jni, PairedStringList strings) {
  const auto [count1, count2, list1] = strings;
  const char **const list2 = list1 && count1 > 0 ? list1 + count1 : list1;
  const jobjectArray first = make_array(jni, count1, list1);
  const jobjectArray second = make_array(jni, count2, list2);
  fill(jni, first, count1, list1);
  fill(jni, second, count2, list2);
  return {first, second};
}

}  // namespace vantiro
