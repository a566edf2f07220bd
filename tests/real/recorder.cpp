#include "recorder.h"

#include <cstdio>
#include <cstdlib>

JNIEnv *Recorder::jni() {
  void *env = nullptr;
  machine_->AttachCurrentThread(&env, nullptr);
  return static_cast<JNIEnv *>(env);
}

// Without the recording side no test can go on.
void Recorder::check(const char *name) {
  if (!jni()->ExceptionCheck()) return;
  jni()->ExceptionDescribe();
  std::printf("the recorder fails in %s\n", name);
  std::abort();
}

jmethodID Recorder::method(const char *name, const char *descriptor) {
  type_ = jni()->FindClass("fi/vantiro/recording/Recorder");
  check("FindClass");
  const jmethodID found = jni()->GetStaticMethodID(type_, name, descriptor);
  check(name);
  return found;
}

void Recorder::answer(jlong number, const char *text) {
  const jmethodID answer = method("answer", "(JLjava/lang/String;)V");
  const jstring string = text ? jni()->NewStringUTF(text) : nullptr;
  jni()->CallStaticVoidMethod(type_, answer, number, string);
  check("answer");
}

void Recorder::fail(const char *signature, const char *message) {
  const jmethodID fail = method("fail", "(Ljava/lang/String;Ljava/lang/String;)V");
  const jstring string = signature ? jni()->NewStringUTF(signature) : nullptr;
  jni()->CallStaticVoidMethod(type_, fail, string, jni()->NewStringUTF(message));
  check("fail");
}

void Recorder::fill_heap(bool full) {
  jni()->CallStaticVoidMethod(type_, method("fillHeap", "(Z)V"), full);
  check("fillHeap");
}

std::string Recorder::take() {
  const jmethodID take = method("take", "()Ljava/lang/String;");
  const auto taken = static_cast<jstring>(jni()->CallStaticObjectMethod(type_, take));
  check("take");
  const char *const text = jni()->GetStringUTFChars(taken, nullptr);
  std::string records = text;
  jni()->ReleaseStringUTFChars(taken, text);
  return records;
}

jobject Recorder::last_object() {
  const jmethodID last = method("lastObject", "()Ljava/lang/Object;");
  const jobject object = jni()->CallStaticObjectMethod(type_, last);
  check("lastObject");
  return object;
}

void Recorder::deliver(const char *text, int threads, int times) {
  const jmethodID deliver = method("deliver", "(Ljava/lang/String;II)V");
  const jstring string = text ? jni()->NewStringUTF(text) : nullptr;
  jni()->CallStaticVoidMethod(type_, deliver, string, threads, times);
  check("deliver");
}
