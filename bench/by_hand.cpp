#include "by_hand.h"

#include <jni.h>
#include <vantiro.h>

#include <cstring>

namespace by_hand {
namespace {

JNIEnv *attached() {
  void *thread_env = nullptr;
  jvm->AttachCurrentThread(&thread_env, nullptr);
  return static_cast<JNIEnv *>(thread_env);
}

bool threw(JNIEnv *jni) {
  if (!jni->ExceptionOccurred()) return false;
  jni->ExceptionDescribe();
  jni->ExceptionClear();
  return true;
}

}  // namespace

int getLastError(int value) {
  if (!sgc || !cls || !env) return -11;
  JNIEnv *jni = attached();
  jmethodID method = jni->GetMethodID(cls, "getLastError", "(I)I");
  if (!method) return -12;
  jni->ExceptionClear();
  jint result = jni->CallIntMethod(sgc, method, value);
  return threw(jni) ? -13 : result;
}

int setLogLevel(const char *level) {
  if (!sgc || !cls || !env) return -11;
  JNIEnv *jni = attached();
  jmethodID method = jni->GetMethodID(cls, "setLogLevel", "(Ljava/lang/String;)I");
  if (!method) return -12;
  jni->ExceptionClear();
  jint result = jni->CallIntMethod(sgc, method, jni->NewStringUTF(level));
  return threw(jni) ? -13 : result;
}

int getUserLogin(char *buffer, unsigned int *size) {
  const unsigned int capacity = *size;
  if (!sgc || !cls || !env) return -11;
  JNIEnv *jni = attached();
  jmethodID method = jni->GetMethodID(cls, "getUserLogin", "()Ljava/lang/String;");
  if (!method) return -12;
  jni->ExceptionClear();
  jstring text = static_cast<jstring>(jni->CallObjectMethod(sgc, method));
  if (threw(jni)) return -13;
  const char *characters = text ? jni->GetStringUTFChars(text, nullptr) : nullptr;
  if (!characters) return -1;
  *size = static_cast<unsigned int>(std::strlen(characters)) + 1;
  const bool fits = capacity >= *size;
  if (fits) std::memcpy(buffer, characters, *size);
  jni->ReleaseStringUTFChars(text, characters);
  return fits ? 0 : -23;
}

int setProjectParams(int project, int count, const char **list) {
  if (!sgc || !cls || !env) return -11;
  JNIEnv *jni = attached();
  jmethodID method = jni->GetMethodID(cls, "setProjectParams", "(I[Ljava/lang/String;)I");
  if (!method) return -12;
  jobjectArray array =
      jni->NewObjectArray(count, jni->FindClass("java/lang/String"), jni->NewStringUTF(""));
  if (!array) return -13;
  for (int i = 0; i < count; ++i) jni->SetObjectArrayElement(array, i, jni->NewStringUTF(list[i]));
  jni->ExceptionClear();
  jint result = jni->CallIntMethod(sgc, method, project, array);
  return threw(jni) ? -13 : result;
}

int peach_setName(int handle, const char *text) {
  if (!pwobj || !pwcls || !env) return -11;
  JNIEnv *jni = attached();
  jmethodID method = jni->GetMethodID(pwcls, "setName", "(ILjava/lang/String;)V");
  jni->ExceptionClear();
  if (!method) return -12;
  jni->CallVoidMethod(pwobj, method, handle, jni->NewStringUTF(text));
  return threw(jni) ? -13 : 0;
}

}  // namespace by_hand
