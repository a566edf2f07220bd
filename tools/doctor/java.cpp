#include "java.h"

namespace doctor {

std::string Java::text(jobject string) const {
  if (!string) return "";
  const auto characters = static_cast<jstring>(string);
  const char *const utf = env_->GetStringUTFChars(characters, nullptr);
  const std::string result = utf ? utf : "";
  if (utf) env_->ReleaseStringUTFChars(characters, utf);
  return result;
}

std::string Java::property(const char *name) const {
  const jclass system = env_->FindClass("java/lang/System");
  const jmethodID get =
      env_->GetStaticMethodID(system, "getProperty", "(Ljava/lang/String;)Ljava/lang/String;");
  return text(env_->CallStaticObjectMethod(system, get, env_->NewStringUTF(name)));
}

std::string Java::heap_limit() const {
  const jclass type = env_->FindClass("java/lang/Runtime");
  const jobject runtime = env_->CallStaticObjectMethod(
      type, env_->GetStaticMethodID(type, "getRuntime", "()Ljava/lang/Runtime;"));
  const jlong bytes = env_->CallLongMethod(runtime, env_->GetMethodID(type, "maxMemory", "()J"));
  return std::to_string(bytes >> 20) + " MB";
}

std::string Java::take_exception() const {
  jthrowable thrown = env_->ExceptionOccurred();
  env_->ExceptionClear();
  const jclass type = env_->FindClass("java/lang/Throwable");
  const jmethodID to_string = env_->GetMethodID(type, "toString", "()Ljava/lang/String;");
  const jmethodID get_cause = env_->GetMethodID(type, "getCause", "()Ljava/lang/Throwable;");
  std::string lines;
  // An exception may be its own cause by a detour.
  for (int depth = 0; thrown && depth < 10; ++depth) {
    const std::string line = text(env_->CallObjectMethod(thrown, to_string));
    env_->ExceptionClear();
    lines += (lines.empty() ? "" : ", caused by ") + line;
    thrown = static_cast<jthrowable>(env_->CallObjectMethod(thrown, get_cause));
    env_->ExceptionClear();
  }
  return lines;
}

}  // namespace doctor
