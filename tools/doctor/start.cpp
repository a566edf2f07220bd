// The same steps in the same order as the library's, with questions in between.
#include <dlfcn.h>
#include <jni.h>
#include <link.h>

#include <cinttypes>
#include <cstdio>
#include <cstdlib>
#include <fstream>

#include "host/machine_options.h"
#include "java.h"
#include "start.h"
#include "vantiro/status.h"

namespace doctor {
namespace {

std::string loader_error() {
  const char *const error = dlerror();
  return error ? error : "";
}

// The room below this function's frame in the area that the stack may use: what Java made
// inaccessible at its lower end is not in it.
std::string stack_left() {
  const auto here = reinterpret_cast<std::uintptr_t>(__builtin_frame_address(0));
  std::ifstream maps("/proc/self/maps");
  for (std::string line; std::getline(maps, line);) {
    std::uintptr_t from = 0;
    std::uintptr_t to = 0;
    if (std::sscanf(line.c_str(), "%" SCNxPTR "-%" SCNxPTR, &from, &to) != 2) continue;
    if (from <= here && here < to) return std::to_string((here - from) >> 10) + " KB";
  }
  return "unknown";
}

class Start {
 public:
  Start(const Attempt &attempt, Tell tell) : attempt_(attempt), tell_(tell) {}

  void run() {
    if (!load_library() || !load_runtime() || !create()) return;
    describe_machine();
    if (find_class() && construct()) initialize();
    step("ending the machine");
    machine_->DestroyJavaVM();
  }

 private:
  void step(const char *name) { tell_("step", name); }

  bool fail(int status, const char *fact, const std::string &text) {
    if (!text.empty()) tell_(fact, text);
    tell_("status", std::to_string(status));
    return false;
  }

  bool fail_with_exception(int status) {
    return fail(status, "exception", Java(env_).take_exception());
  }

  bool load_library() {
    step("loading the library");
    void *const handle = dlopen(attempt_.library.c_str(), RTLD_LAZY);
    if (handle && dlsym(handle, "vantiro_init")) return true;
    tell_("library does not load", loader_error());
    return false;
  }

  bool load_runtime() {
    step("loading the runtime");
    void *const handle = dlopen(attempt_.runtime.c_str(), RTLD_LAZY);
    if (handle) create_ = reinterpret_cast<decltype(create_)>(dlsym(handle, "JNI_CreateJavaVM"));
    if (!create_) return fail(VANTIRO_ERROR_RUNTIME_NOT_FOUND, "loader", loader_error());
    Dl_info info;
    if (dladdr(reinterpret_cast<const void *>(create_), &info)) tell_("runtime", info.dli_fname);
    return true;
  }

  bool create() {
    step(creating_machine);
    std::vector<std::string> texts = {class_path_option(attempt_.directory), vantiro::heap_option,
                                      vantiro::management_option};
    // A machine that crashes is not to leave its report in the user's directory.
    texts.emplace_back("-XX:ErrorFile=/dev/null");
    texts.insert(texts.end(), attempt_.further_options.begin(), attempt_.further_options.end());
    std::vector<JavaVMOption> options;
    for (std::string &text : texts) options.push_back({text.data(), nullptr});
    JavaVMInitArgs arguments = {JNI_VERSION_1_4, static_cast<jint>(options.size()), options.data(),
                                JNI_TRUE};
    if (create_(&machine_, reinterpret_cast<void **>(&env_), &arguments) == JNI_OK) return true;
    return fail(VANTIRO_ERROR_NOT_INITIALIZED, "", "");
  }

  void describe_machine() {
    const Java java(env_);
    tell_("version", java.property("java.version"));
    tell_("vendor", java.property("java.vendor"));
    tell_("machine", java.property("java.vm.name"));
    tell_("word size", std::to_string(8 * sizeof(void *)) + " bits");
    tell_("heap limit", java.heap_limit());
    tell_("class path", java.property("java.class.path"));
    tell_("home", java.property("user.home"));
    tell_("temporary directory", java.property("java.io.tmpdir"));
    tell_("encoding of file names", java.property("sun.jnu.encoding"));
    tell_("stack left to this thread", stack_left());
  }

  bool find_class() {
    step("finding the management class");
    class_ = env_->FindClass("fi/vantiro/user/ManagementImpl");
    return class_ || fail_with_exception(VANTIRO_ERROR_METHOD_NOT_FOUND);
  }

  bool construct() {
    step("constructing the management object");
    const jmethodID constructor = env_->GetMethodID(class_, "<init>", "()V");
    if (!constructor) return fail_with_exception(VANTIRO_ERROR_CONSTRUCTOR_MISSING);
    object_ = env_->NewObject(class_, constructor);
    return object_ || fail_with_exception(VANTIRO_ERROR_INITIALIZATION);
  }

  void initialize() {
    step("calling the initialiser");
    const jmethodID initializer = env_->GetMethodID(class_, "initFile", "()I");
    if (!initializer) {
      fail_with_exception(VANTIRO_ERROR_INITIALIZER_MISSING);
      return;
    }
    const jint result = env_->CallIntMethod(object_, initializer);
    if (env_->ExceptionCheck()) {
      fail_with_exception(VANTIRO_ERROR_UNCAUGHT_EXCEPTION);
    } else {
      fail(result, "message", result < 0 ? words_for(result) : "");
    }
  }

  // What the Java library says of its own failure.
  std::string words_for(jint result) {
    std::string words;
    const jmethodID describe =
        env_->GetMethodID(class_, "describeStatusCode", "(I)Ljava/lang/String;");
    const Java java(env_);
    if (describe) words = java.text(env_->CallObjectMethod(object_, describe, result));
    env_->ExceptionClear();
    const jmethodID last = env_->GetMethodID(class_, "getLastErrorMessage", "()Ljava/lang/String;");
    if (last) words += ": " + java.text(env_->CallObjectMethod(object_, last));
    env_->ExceptionClear();
    return words;
  }

  const Attempt &attempt_;
  Tell tell_;
  decltype(&JNI_CreateJavaVM) create_ = nullptr;
  JavaVM *machine_ = nullptr;
  JNIEnv *env_ = nullptr;
  jclass class_ = nullptr;
  jobject object_ = nullptr;
};

}  // namespace

std::string class_path_option(const std::string &directory) {
  const int length = static_cast<int>(directory.size());
  const char *const text = directory.c_str();
  char *option = nullptr;
  if (asprintf(&option, vantiro::class_path_option, length, text, length, text, length, text) < 0) {
    return "";
  }
  const std::string result = option;
  std::free(option);
  return result;
}

void start(const Attempt &attempt, Tell tell) { Start(attempt, tell).run(); }

std::string locate(const std::string &name) {
  const Outcome outcome = run_in_child([&](Tell tell) {
    void *const handle = dlopen(name.c_str(), RTLD_LAZY);
    link_map *map = nullptr;
    if (handle && dlinfo(handle, RTLD_DI_LINKMAP, &map) == 0) tell("file", map->l_name);
  });
  return outcome.fact("file");
}

}  // namespace doctor
