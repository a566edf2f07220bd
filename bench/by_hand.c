#include "by_hand.h"

#include <stdlib.h>
#include <string.h>
#include <vantiro.h>

static JNIEnv *attached(void) {
  void *thread_env = NULL;
  (*jvm)->AttachCurrentThread(jvm, &thread_env, NULL);
  return thread_env;
}

static int threw(JNIEnv *jni) {
  if (!(*jni)->ExceptionOccurred(jni)) return 0;
  (*jni)->ExceptionDescribe(jni);
  (*jni)->ExceptionClear(jni);
  return 1;
}

/* What every call on the management object begins with. */
#define LOOK_UP(name, descriptor)                                       \
  if (!sgc || !cls || !env) return -11;                                 \
  JNIEnv *jni = attached();                                             \
  jmethodID method = (*jni)->GetMethodID(jni, cls, (name), descriptor); \
  if (!method) return -12

static jobjectArray to_array(JNIEnv *jni, int count, const char **list) {
  jobjectArray array = (*jni)->NewObjectArray(
      jni, count, (*jni)->FindClass(jni, "java/lang/String"), (*jni)->NewStringUTF(jni, ""));
  for (int i = 0; array && i < count; ++i) {
    (*jni)->SetObjectArrayElement(jni, array, i, (*jni)->NewStringUTF(jni, list[i]));
  }
  return array;
}

static int to_buffer(JNIEnv *jni, jstring text, char *buffer, unsigned int *size) {
  const unsigned int capacity = *size;
  const char *characters = text ? (*jni)->GetStringUTFChars(jni, text, NULL) : NULL;
  if (!characters) return -1;
  *size = (unsigned int)strlen(characters) + 1;
  const int fits = capacity >= *size;
  if (fits) memcpy(buffer, characters, *size);
  (*jni)->ReleaseStringUTFChars(jni, text, characters);
  return fits ? 0 : -23;
}

int by_hand_open(void) {
  LOOK_UP("open", "()I");
  (*jni)->ExceptionClear(jni);
  jint result = (*jni)->CallIntMethod(jni, sgc, method);
  return threw(jni) ? -13 : result;
}

int by_hand_getLastError(int value) {
  LOOK_UP("getLastError", "(I)I");
  (*jni)->ExceptionClear(jni);
  jint result = (*jni)->CallIntMethod(jni, sgc, method, value);
  return threw(jni) ? -13 : result;
}

int by_hand_setStreamResults(int handle, unsigned char flag) {
  LOOK_UP("setStreamResults", "(IZ)I");
  (*jni)->ExceptionClear(jni);
  jint result = (*jni)->CallIntMethod(jni, sgc, method, handle, flag);
  return threw(jni) ? -13 : result;
}

int by_hand_actionWait(int milliseconds) {
  LOOK_UP("actionWait", "(J)Z");
  (*jni)->ExceptionClear(jni);
  jboolean result = (*jni)->CallBooleanMethod(jni, sgc, method, (jlong)milliseconds);
  return threw(jni) ? -13 : result;
}

int by_hand_isFailed(int handle) {
  LOOK_UP("isFailed", "(I)Z");
  (*jni)->ExceptionClear(jni);
  jboolean result = (*jni)->CallBooleanMethod(jni, sgc, method, handle);
  return threw(jni) ? -13 : result;
}

int by_hand_getUsedTime(int handle) {
  LOOK_UP("getUsedTime", "(I)J");
  (*jni)->ExceptionClear(jni);
  jlong result = (*jni)->CallLongMethod(jni, sgc, method, handle);
  return threw(jni) ? -13 : (int)result;
}

int by_hand_setLogLevel(const char *level) {
  LOOK_UP("setLogLevel", "(Ljava/lang/String;)I");
  (*jni)->ExceptionClear(jni);
  jint result = (*jni)->CallIntMethod(jni, sgc, method, (*jni)->NewStringUTF(jni, level));
  return threw(jni) ? -13 : result;
}

int by_hand_setProjectParams(int project, int count, const char **list) {
  LOOK_UP("setProjectParams", "(I[Ljava/lang/String;)I");
  jobjectArray array = to_array(jni, count, list);
  (*jni)->ExceptionClear(jni);
  jint result = (*jni)->CallIntMethod(jni, sgc, method, project, array);
  return threw(jni) ? -13 : result;
}

#define STRING "Ljava/lang/String;"

int by_hand_createBundle(int handle, const char **nine, int count1, int count2, const char **list) {
  LOOK_UP("createBundle", "(I" STRING STRING STRING STRING STRING STRING STRING STRING STRING
                          "[" STRING "[" STRING ")I");
  jobjectArray first = to_array(jni, count1, list);
  jobjectArray second = to_array(jni, count2, list + count1);
  (*jni)->ExceptionClear(jni);
  jstring s[9];
  for (int i = 0; i < 9; ++i) s[i] = (*jni)->NewStringUTF(jni, nine[i]);
  jint result = (*jni)->CallIntMethod(jni, sgc, method, handle, s[0], s[1], s[2], s[3], s[4], s[5],
                                      s[6], s[7], s[8], first, second);
  return threw(jni) ? -13 : result;
}

int by_hand_getUserLogin(char *buffer, unsigned int *size) {
  LOOK_UP("getUserLogin", "()" STRING);
  (*jni)->ExceptionClear(jni);
  jstring text = (*jni)->CallObjectMethod(jni, sgc, method);
  return threw(jni) ? -13 : to_buffer(jni, text, buffer, size);
}

int by_hand_getStatisticsString(int handle, char *buffer, unsigned int *size) {
  LOOK_UP("getStatisticsString", "(I)" STRING);
  (*jni)->ExceptionClear(jni);
  jstring text = (*jni)->CallObjectMethod(jni, sgc, method, handle);
  return threw(jni) ? -13 : to_buffer(jni, text, buffer, size);
}

int by_hand_getResultFiles(int handle, int *index, char *buffer, unsigned int *size) {
  LOOK_UP("getResultFileCount", "(I)I");
  jmethodID getter = (*jni)->GetMethodID(jni, cls, "getResultFileName", "(II)" STRING);
  if (!getter) return -12;
  (*jni)->ExceptionClear(jni);
  jint count = (*jni)->CallIntMethod(jni, sgc, method, handle);
  if (threw(jni)) return -13;
  if (*index < 0 || *index >= count) return -24;
  jstring text = (*jni)->CallObjectMethod(jni, sgc, getter, handle, *index);
  if (threw(jni)) return -13;
  const int status = to_buffer(jni, text, buffer, size);
  (*jni)->DeleteLocalRef(jni, text);
  *index = count;
  return status;
}

int by_hand_getJavaSystemProperty(const char *key, char *buffer, unsigned int *size) {
  if (!env) return -11;
  JNIEnv *jni = attached();
  jclass system = (*jni)->FindClass(jni, "java/lang/System");
  if (!system) return -12;
  jmethodID method = (*jni)->GetStaticMethodID(jni, system, "getProperty", "(" STRING ")" STRING);
  (*jni)->ExceptionClear(jni);
  if (!method) return -12;
  jstring text =
      (*jni)->CallStaticObjectMethod(jni, system, method, (*jni)->NewStringUTF(jni, key));
  return threw(jni) ? -13 : to_buffer(jni, text, buffer, size);
}

/* Calls on the parallel-each object clear first, and test then. */
#define LOOK_UP_PEACH(name, descriptor)                                   \
  if (!pwobj || !pwcls || !env) return -11;                               \
  JNIEnv *jni = attached();                                               \
  jmethodID method = (*jni)->GetMethodID(jni, pwcls, (name), descriptor); \
  (*jni)->ExceptionClear(jni);                                            \
  if (!method) return -12

int by_hand_peach_setName(int handle, const char *text) {
  LOOK_UP_PEACH("setName", "(I" STRING ")V");
  (*jni)->CallVoidMethod(jni, pwobj, method, handle, (*jni)->NewStringUTF(jni, text));
  return threw(jni) ? -13 : 0;
}

int by_hand_peach_addExeFile(int handle, const char *s1, const char *s2, const char *s3,
                             const char *s4) {
  LOOK_UP_PEACH("addExeFile", "(I" STRING STRING STRING STRING ")V");
  jstring text1 = (*jni)->NewStringUTF(jni, s1);
  jstring text2 = (*jni)->NewStringUTF(jni, s2);
  jstring text3 = (*jni)->NewStringUTF(jni, s3);
  jstring text4 = (*jni)->NewStringUTF(jni, s4);
  (*jni)->CallVoidMethod(jni, pwobj, method, handle, text1, text2, text3, text4);
  return threw(jni) ? -13 : 0;
}

void by_hand_callback(JNIEnv *jni, jobject object, jstring text) {
  (void)object;
  const char *characters = text ? (*jni)->GetStringUTFChars(jni, text, NULL) : NULL;
  if (!characters) return;
  if (vantiro_peach_intermediate_callback_fun) vantiro_peach_intermediate_callback_fun(characters);
  (*jni)->ReleaseStringUTFChars(jni, text, characters);
}
