#include "start.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <jni.h>

#include <cstdarg>
#include <cstdlib>
#include <cstring>

#include "files.h"

namespace doctor {

// The library keeps its state in these variables. It uses a program's own where there are some, and
// so tells the parent, too, how far it came.
SharedPage<JNIEnv *> env asm("env");
SharedPage<jclass> management_class asm("cls");
SharedPage<jobject> management_object asm("sgc");

namespace {

// Set while the library searches; the source is what it has asked last.
bool watching = false;
std::string source;

template <typename Function>
Function *function_of(void *library, const char *name) {
  return reinterpret_cast<Function *>(dlsym(library, name));
}

}  // namespace
}  // namespace doctor

// The functions of the C library through which the search goes. The loader binds the library's
// calls to a program's own functions first, so that any build of it can be watched.
extern "C" {

int watched_open(const char *path, int flags, ...) asm("open64");
int watched_open(const char *path, int flags, ...) {
  va_list further;
  va_start(further, flags);
  const auto mode = va_arg(further, mode_t);
  va_end(further);
  const int file = openat(AT_FDCWD, path, flags, mode);
  const int error = errno;
  if (doctor::watching) doctor::tell("place", path);
  if (doctor::watching && doctor::source.empty()) doctor::source = doctor::name_of(path);
  errno = error;
  return file;
}

char *watched_secure_getenv(const char *name) asm("secure_getenv");
char *watched_secure_getenv(const char *name) {
  doctor::source = name;
  return doctor::function_of<decltype(secure_getenv)>(RTLD_NEXT, "secure_getenv")(name);
}

void *watched_dlopen(const char *name, int mode) asm("dlopen");
void *watched_dlopen(const char *name, int mode) {
  const auto load = doctor::function_of<decltype(dlopen)>(RTLD_NEXT, "dlopen");
  if (!doctor::watching || !name) return load(name, mode);
  doctor::watching = false;
  doctor::tell("runtime", name);
  doctor::tell("source", std::strchr(name, '/') ? doctor::source : "the loader's own search");
  void *const handle = load(name, mode);
  if (handle) doctor::tell("loaded", "yes");
  return handle;
}
}

namespace doctor {
namespace {

// What Java says of itself.
void describe_machine() {
  JNIEnv *const jni = env.value;
  if (jni->ExceptionCheck()) jni->ExceptionDescribe();
  const jclass system = jni->FindClass("java/lang/System");
  const jmethodID get =
      jni->GetStaticMethodID(system, "getProperty", "(Ljava/lang/String;)Ljava/lang/String;");
  for (const char *const name : {"java.vm.name", "java.version", "java.vendor", "java.class.path",
                                 "user.home", "java.io.tmpdir", "sun.jnu.encoding"}) {
    const auto value =
        static_cast<jstring>(jni->CallStaticObjectMethod(system, get, jni->NewStringUTF(name)));
    const char *const text = value ? jni->GetStringUTFChars(value, nullptr) : nullptr;
    if (text) tell(name, text);
  }
}

// What the Java library says of its own failure.
void tell_message(void *library, int status) {
  char text[4096] = "";
  unsigned size = sizeof text;
  const auto describe =
      function_of<int(int, char *, unsigned *)>(library, "vantiro_describeStatusCode");
  if (describe && describe(status, text, &size) == 0) tell("status text", text);
  size = sizeof text;
  const auto last = function_of<int(char *, unsigned *)>(library, "vantiro_getLastErrorMessage");
  if (status < 0 && last && last(text, &size) == 0) tell("message", text);
}

void start_here(const std::string &library, const Environment &changes) {
  for (const auto &[name, value] : changes) {
    value ? setenv(name, value->c_str(), 1) : unsetenv(name);
  }
  void *const handle = dlopen(library.c_str(), RTLD_LAZY);
  const auto init = handle ? function_of<int()>(handle, "vantiro_init") : nullptr;
  if (!init) return tell("library does not load", dlerror());
  Dl_info info{};
  dladdr(reinterpret_cast<const void *>(init), &info);
  tell("library", info.dli_fname);
  watching = true;
  const int status = init();
  tell("status", std::to_string(status));
  if (env.value) describe_machine();
  tell_message(handle, status);
}

std::string step_of(const Outcome &outcome) {
  if (outcome.fact("library").empty()) return loading_library;
  if (outcome.fact("loaded").empty()) return loading_runtime;
  if (!env.value) return creating_machine;
  if (!management_class.value) return "finding the management class";
  if (!management_object.value) return "constructing the management object";
  return "calling the initialiser";
}

}  // namespace

Start start(const std::string &library, const Environment &changes) {
  share_page(&env, sizeof env);
  share_page(&management_class, sizeof management_class);
  share_page(&management_object, sizeof management_object);
  Start result{run_in_child([&] { start_here(library, changes); }), {}, {}, {}};
  if (!result.fact("status").empty()) result.status = std::stoi(result.fact("status"));
  result.step = step_of(result);
  result.runtime = result.fact("runtime");
  return result;
}

Outcome load(const std::vector<std::string> &libraries, const char *function) {
  return run_in_child([&] {
    for (const std::string &library : libraries) {
      void *const handle = dlopen(library.c_str(), RTLD_LAZY);
      if (!handle) return tell("error", dlerror());
      if (library == libraries.front() && !dlsym(handle, function)) tell("no function", function);
    }
  });
}

}  // namespace doctor
