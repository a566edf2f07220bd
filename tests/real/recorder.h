// The recording Java side: what arrived there, and what it is to answer.
#pragma once

#include <jni.h>

#include <string>

class Recorder {
 public:
  explicit Recorder(JavaVM *machine) : machine_(machine) {}

  // From now on every Java method returns `number`, `text` or, unless `text` is null, an object.
  void answer(jlong number, const char *text = "");

  // From now on the methods with `signature` in their own throw; none for null.
  void fail(const char *signature, const char *message = "scripted failure");

  // Leaves no room in the Java heap, or gives it back.
  void fill_heap(bool full);

  // The calls since this was asked last, a line each.
  std::string take();

  // The last object that a Java method returned, as a local reference.
  jobject last_object();

  // Gives `text` to the registered handlers, `times` from each of that many Java threads at once.
  void deliver(const char *text, int threads, int times);

  // The calling thread's environment.
  JNIEnv *jni();

 private:
  jmethodID method(const char *name, const char *descriptor);
  void check(const char *name);

  JavaVM *machine_;
  jclass type_ = nullptr;
};
