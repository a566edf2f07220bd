// The start of the Java runtime: loaded, then a machine joined or created, and the management class
// found.
#include "host/runtime.h"

#include <dlfcn.h>

#include <cstdio>
#include <cstdlib>

#include "bridge/steps.h"
#include "host/discovery.h"
#include "vantiro/runtime.h"
#include "vantiro/status.h"

using namespace vantiro;

namespace {

// What the machine is asked for; later runtimes know this version too.
constexpr jint jni_version = JNI_VERSION_1_4;

// To be formatted with the library's directory, three times, each as a length and the text.
constexpr char class_path_option[] =
    "-Djava.class.path=%.*s/vantiro.jar:%.*s/commons-codec-1.3.jar:%.*s/xmlrpc-2.0.jar";
constexpr char heap_option[] = "-Xmx128M";
constexpr char management_option[] = "-Dcom.sun.management.jmxremote";

// Whether the machine in `jvm` is the library's own. A host's machine must not be destroyed: that
// would wait for the host's own threads.
bool machine_is_own = false;

struct InvocationInterface {
  decltype(&JNI_CreateJavaVM) create;
  decltype(&JNI_GetDefaultJavaVMInitArgs) get_default_arguments;
  decltype(&JNI_GetCreatedJavaVMs) get_created;
};

// Its data is null when the loader does not tell.
std::string_view library_directory() {
  Dl_info library;
  return dladdr(reinterpret_cast<const void *>(&vantiro_initJava), &library)
             ? directory_of(library.dli_fname)
             : std::string_view();
}

bool loader_complains() {
  const char *const complaint = dlerror();
  if (complaint) std::puts(complaint);
  return complaint != nullptr;
}

template <typename Function>
bool resolve(Function &function, const char *name) {
  function = reinterpret_cast<Function>(dlsym(jvmlibHandle, name));
  return !loader_complains();
}

bool load_runtime(std::string_view directory, InvocationInterface &java) {
  char path[path_capacity] = "";
  find_runtime({path}, directory);
  jvmlibHandle = dlopen(path, RTLD_LAZY);
  return !loader_complains() && resolve(java.create, "JNI_CreateJavaVM") &&
         resolve(java.get_default_arguments, "JNI_GetDefaultJavaVMInitArgs") &&
         resolve(java.get_created, "JNI_GetCreatedJavaVMs");
}

bool machine_is_running(const InvocationInterface &java) {
  jsize count = 0;
  return java.get_created(&jvm, 1, &count) == 0 && count != 0;
}

bool join_machine() {
  machine_is_own = false;
  jvm->AttachCurrentThread(reinterpret_cast<void **>(&env), nullptr);
  return jvm->GetEnv(reinterpret_cast<void **>(&env), jni_version) == JNI_OK;
}

bool create_machine(const InvocationInterface &java, std::string_view directory,
                    JavaVMInitArgs &arguments) {
  char *class_path = nullptr;
  const int length = static_cast<int>(directory.size());
  const char *const text = directory.data();
  if (asprintf(&class_path, class_path_option, length, text, length, text, length, text) < 0) {
    return false;
  }
  JavaVMOption options[] = {{class_path, nullptr},
                            {const_cast<char *>(heap_option), nullptr},
                            {const_cast<char *>(management_option), nullptr}};
  arguments = {jni_version, 3, options, JNI_TRUE};
  machine_is_own = java.create(&jvm, reinterpret_cast<void **>(&env), &arguments) == JNI_OK;
  std::free(class_path);
  return machine_is_own;
}

}  // namespace

int vantiro_initJava(void) {
  const std::string_view directory = library_directory();
  InvocationInterface java;
  if (!load_runtime(directory, java)) return VANTIRO_ERROR_RUNTIME_NOT_FOUND;

  JavaVMInitArgs arguments{};
  arguments.version = jni_version;
  java.get_default_arguments(&arguments);

  if (!env) {
    const bool started =
        machine_is_running(java) ? join_machine() : create_machine(java, directory, arguments);
    if (!started) {
      env = nullptr;
      return VANTIRO_ERROR_NOT_INITIALIZED;
    }
  } else if (!jvm) {
    // A program's own variable of that name has taken over `env`.
    return VANTIRO_ERROR_NOT_INITIALIZED;
  }

  cls = new_global_reference(env, env->FindClass("fi/vantiro/user/ManagementImpl"));
  if (!cls) {
    if (machine_is_own) jvm->DetachCurrentThread();
    abandon_machine();
    return VANTIRO_ERROR_METHOD_NOT_FOUND;
  }
  jvm->AttachCurrentThread(reinterpret_cast<void **>(&env), nullptr);
  return VANTIRO_OK;
}

void vantiro::abandon_machine() {
  if (machine_is_own) {
    jvm->DestroyJavaVM();
  } else {
    // The host's thread must not find the exception of a look-up that it knows nothing of.
    env->ExceptionClear();
  }
  env = nullptr;
}
