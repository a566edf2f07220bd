// The characters of a Java string, for as long as they are needed.
#pragma once

#include <jni.h>

#include <cstring>

namespace vantiro {

class Characters {
 public:
  // False when `string` is null, which the Java machine must not be asked about, and when the
  // machine has no memory for the characters.
  Characters(JNIEnv *jni, jobject string)
      : jni_(jni),
        string_(static_cast<jstring>(string)),
        text_(string ? jni->GetStringUTFChars(string_, nullptr) : nullptr) {}
  ~Characters() {
    if (text_) jni_->ReleaseStringUTFChars(string_, text_);
  }
  Characters(const Characters &) = delete;
  Characters &operator=(const Characters &) = delete;

  explicit operator bool() const { return text_; }
  const char *get() const { return text_; }
  unsigned int size() const { return static_cast<unsigned int>(std::strlen(text_)) + 1; }

 private:
  JNIEnv *jni_;
  jstring string_;
  const char *text_;
};

}  // namespace vantiro
