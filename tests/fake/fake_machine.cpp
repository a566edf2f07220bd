// The machine of the fake runtime: what a program calls before it has an environment.
#include <deque>
#include <mutex>
#include <sstream>

#include "fake_jvm.h"
#include "fake_state.h"

namespace fake {
namespace {

bool runs = false;

jint destroy(JavaVM *) {
  record("DestroyJavaVM");
  stop_machine();
  return JNI_OK;
}

jint attach_thread(JavaVM *, void **place, void *arguments) {
  record(arguments ? "AttachCurrentThread with arguments" : "AttachCurrentThread");
  if (!runs || fails("AttachCurrentThread")) return JNI_ERR;
  *place = static_cast<JNIEnv *>(attach());
  return JNI_OK;
}

jint detach_thread(JavaVM *) {
  record("DetachCurrentThread");
  thread_env() = nullptr;
  return JNI_OK;
}

jint get_env(JavaVM *, void **place, jint version) {
  std::ostringstream line;
  line << "GetEnv " << std::hex << version;
  record(line.str());
  *place = static_cast<JNIEnv *>(thread_env());
  if (fails("GetEnv")) return JNI_EVERSION;
  return thread_env() ? JNI_OK : JNI_EDETACHED;
}

const JNIInvokeInterface_ machine_functions = {
    nullptr,       nullptr,       nullptr, destroy,
    attach_thread, detach_thread, get_env, [](JavaVM *, void **, void *) -> jint { forbidden(); }};

JavaVM_ machine{&machine_functions};

}  // namespace

Env *&thread_env() {
  thread_local Env *own = nullptr;
  return own;
}

Env *attach() {
  if (thread_env()) return thread_env();
  static std::mutex mutex;
  static std::deque<Env> environments;
  const std::scoped_lock lock(mutex);
  return thread_env() = &environments.emplace_back();
}

void run_machine() { runs = true; }

void stop_machine() {
  runs = false;
  thread_env() = nullptr;
}

}  // namespace fake

using namespace fake;

jint JNI_GetDefaultJavaVMInitArgs(void *place) {
  auto &arguments = *static_cast<JavaVMInitArgs *>(place);
  std::ostringstream line;
  line << "JNI_GetDefaultJavaVMInitArgs " << std::hex << arguments.version;
  record(line.str());
  static JavaVMOption option;
  arguments = {JNI_VERSION_1_2, 1, &option, JNI_FALSE};
  return JNI_ERR;
}

jint JNI_GetCreatedJavaVMs(JavaVM **place, jsize size, jsize *count) {
  record("JNI_GetCreatedJavaVMs " + std::to_string(size) + " " + std::to_string(*count));
  // A count is there in the case of failure too: it must not be believed.
  const bool failure = fails("JNI_GetCreatedJavaVMs");
  if (runs) *place = &machine;
  *count = runs || failure ? 1 : 0;
  return failure ? JNI_ERR : JNI_OK;
}

jint JNI_CreateJavaVM(JavaVM **machine_place, void **env_place, void *arguments_place) {
  const auto &arguments = *static_cast<const JavaVMInitArgs *>(arguments_place);
  std::ostringstream line;
  line << "JNI_CreateJavaVM " << std::hex << arguments.version << std::dec
       << " ignoreUnrecognized=" << int{arguments.ignoreUnrecognized};
  for (int i = 0; i < arguments.nOptions; ++i) {
    line << " " << arguments.options[i].optionString;
    if (arguments.options[i].extraInfo) line << " with extra information";
  }
  record(line.str());
  if (runs) return JNI_EEXIST;
  *machine_place = &machine;
  *env_place = static_cast<JNIEnv *>(attach());
  if (fails("JNI_CreateJavaVM")) {
    thread_env() = nullptr;
    return JNI_ERR;
  }
  runs = true;
  return JNI_OK;
}
