// The few questions that are put to a running Java machine.
#pragma once

#include <jni.h>

#include <string>

namespace doctor {

class Java {
 public:
  explicit Java(JNIEnv *env) : env_(env) {}

  // "" when Java has no such text.
  std::string text(jobject string) const;
  std::string property(const char *name) const;
  std::string heap_limit() const;

  // The pending exception, which is cleared: what `toString` gives for it and for its causes. ""
  // when none is pending.
  std::string take_exception() const;

 private:
  JNIEnv *env_;
};

}  // namespace doctor
