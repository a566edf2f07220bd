// The environment of the fake runtime: the functions of the Java Native Interface.
#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <mutex>

#include "fake_jvm.h"
#include "fake_state.h"

namespace fake {

Env &checked(JNIEnv *jni) {
  if (!jni || jni != thread_env()) die("an environment was used that is not the thread's own");
  return static_cast<Env &>(*jni);
}

Reference *checked(const Env &env, jobject object) {
  auto *const reference = reinterpret_cast<Reference *>(object);
  if (!reference) return nullptr;
  if (reference->deleted) die("a reference was used after its deletion");
  if (reference->owner && reference->owner != &env) die("a reference was used in another thread");
  return reference;
}

Reference &required(const Env &env, jobject object, const std::string &function) {
  Reference *const reference = checked(env, object);
  if (!reference) die("null was given to " + function);
  return *reference;
}

std::string short_name(const std::string &type) { return type.substr(type.rfind('/') + 1); }

std::string described(const Reference *reference) {
  if (!reference) return "null";
  if (reference->type == "java/lang/String") return '"' + reference->text + '"';
  if (reference->type == "java/lang/Class") return short_name(reference->text);
  if (!reference->type.starts_with('[')) return short_name(reference->type);
  std::string list;
  for (const Reference *element : reference->elements) {
    list += (list.empty() ? "" : ", ") + described(element);
  }
  return '[' + list + ']';
}

bool raises(Env &env, const std::string &function) {
  const bool failure = fails(function);
  if (failure) env.pending = "failure of " + function;
  return failure;
}

namespace {

std::atomic<void (*)(JNIEnv *, jobject, jstring)> native_method = nullptr;
std::atomic<int> obtained_characters = 0;

jclass find_class(JNIEnv *jni, const char *name) {
  Env &env = checked(jni);
  record(std::string("FindClass ") + name);
  if (raises(env, "FindClass")) return nullptr;
  if (is_missing(name)) {
    env.pending = std::string("no class ") + name;
    return nullptr;
  }
  return as<jclass>(make(env, "java/lang/Class", name));
}

jmethodID look_up(const char *function, JNIEnv *jni, jclass type, const char *name,
                  const char *descriptor) {
  Env &env = checked(jni);
  const Reference &owner = required(env, type, function);
  const std::string place = short_name(owner.text);
  record(std::string(function) + " " + place + " " + name + " " + descriptor);
  if (raises(env, function)) return nullptr;
  if (is_missing(place + "." + name)) {
    env.pending = std::string("no method ") + name;
    return nullptr;
  }
  return reinterpret_cast<jmethodID>(
      &env.methods.emplace_back(Method{owner.text, name, descriptor}));
}

jmethodID get_method(JNIEnv *jni, jclass type, const char *name, const char *descriptor) {
  return look_up("GetMethodID", jni, type, name, descriptor);
}

jmethodID get_static_method(JNIEnv *jni, jclass type, const char *name, const char *descriptor) {
  return look_up("GetStaticMethodID", jni, type, name, descriptor);
}

jobject new_global(JNIEnv *jni, jobject object) {
  const Reference &local = required(checked(jni), object, "NewGlobalRef");
  record("NewGlobalRef " + described(&local));
  if (fails("NewGlobalRef")) return nullptr;
  static std::mutex mutex;
  static std::deque<Reference> references;
  const std::scoped_lock lock(mutex);
  return as<jobject>(&references.emplace_back(Reference{local.type, local.text, {}, nullptr}));
}

void delete_local(JNIEnv *jni, jobject object) {
  Reference &local = required(checked(jni), object, "DeleteLocalRef");
  record("DeleteLocalRef " + described(&local));
  local.deleted = true;
}

jstring new_string(JNIEnv *jni, const char *text) {
  Env &env = checked(jni);
  if (!text) die("null was given to NewStringUTF");
  record("NewStringUTF \"" + std::string(text) + '"');
  if (raises(env, "NewStringUTF")) return nullptr;
  return as<jstring>(make(env, "java/lang/String", text));
}

jobjectArray new_array(JNIEnv *jni, jsize length, jclass type, jobject initial) {
  Env &env = checked(jni);
  const Reference &element = required(env, type, "NewObjectArray");
  const Reference *const first = checked(env, initial);
  record("NewObjectArray " + std::to_string(length) + " " + described(&element) + " " +
         described(first));
  if (raises(env, "NewObjectArray")) return nullptr;
  if (length < 0) die("an array of negative length was asked for");
  Reference *const array = make(env, "[L" + element.text + ";");
  array->elements.assign(static_cast<std::size_t>(length), first);
  return as<jobjectArray>(array);
}

void set_element(JNIEnv *jni, jobjectArray place, jsize index, jobject value) {
  Env &env = checked(jni);
  Reference &array = required(env, place, "SetObjectArrayElement");
  const Reference *const element = checked(env, value);
  record("SetObjectArrayElement " + std::to_string(index) + " " + described(element));
  if (!raises(env, "SetObjectArrayElement")) {
    array.elements.at(static_cast<std::size_t>(index)) = element;
  }
}

const char *get_characters(JNIEnv *jni, jstring string, jboolean *) {
  Env &env = checked(jni);
  const Reference &text = required(env, string, "GetStringUTFChars");
  record("GetStringUTFChars " + described(&text));
  if (raises(env, "GetStringUTFChars")) return nullptr;
  obtained_characters.fetch_add(1, std::memory_order_relaxed);
  return env.characters.emplace(strdup(text.text.c_str()), &text).first->first;
}

void release_characters(JNIEnv *jni, jstring string, const char *characters) {
  Env &env = checked(jni);
  const Reference &text = required(env, string, "ReleaseStringUTFChars");
  record("ReleaseStringUTFChars " + described(&text));
  const auto obtained = env.characters.find(characters);
  if (obtained == env.characters.end() || obtained->second != &text) {
    die("characters were released that are not the string's");
  }
  env.characters.erase(obtained);
  obtained_characters.fetch_sub(1, std::memory_order_relaxed);
  std::free(const_cast<char *>(characters));
}

jthrowable exception_occurred(JNIEnv *jni) {
  Env &env = checked(jni);
  record("ExceptionOccurred");
  return env.pending.empty() ? nullptr : as<jthrowable>(make(env, "java/lang/Throwable"));
}

// Not every machine clears the exception here.
void exception_describe(JNIEnv *jni) {
  const Env &env = checked(jni);
  record("ExceptionDescribe");
  std::fprintf(stderr, "Exception: %s\n", env.pending.c_str());
}

void exception_clear(JNIEnv *jni) {
  Env &env = checked(jni);
  record("ExceptionClear");
  env.pending.clear();
}

jint register_natives(JNIEnv *jni, jclass type, const JNINativeMethod *methods, jint count) {
  Env &env = checked(jni);
  record("RegisterNatives " + std::to_string(count) + " " +
         described(&required(env, type, "RegisterNatives")) + " " + methods->name + " " +
         methods->signature);
  if (raises(env, "RegisterNatives")) return JNI_ERR;
  native_method.store(reinterpret_cast<void (*)(JNIEnv *, jobject, jstring)>(methods->fnPtr),
                      std::memory_order_relaxed);
  return JNI_OK;
}

JNINativeInterface_ make_functions() {
  JNINativeInterface_ table;
  std::fill_n(reinterpret_cast<void **>(&table), sizeof table / sizeof(void *),
              reinterpret_cast<void *>(&forbidden));
  table.FindClass = find_class;
  table.GetMethodID = get_method;
  table.GetStaticMethodID = get_static_method;
  table.NewStringUTF = new_string;
  table.NewObjectArray = new_array;
  table.SetObjectArrayElement = set_element;
  table.GetStringUTFChars = get_characters;
  table.ReleaseStringUTFChars = release_characters;
  table.DeleteLocalRef = delete_local;
  table.NewGlobalRef = new_global;
  add_calls(table);
  table.ExceptionOccurred = exception_occurred;
  table.ExceptionDescribe = exception_describe;
  table.ExceptionClear = exception_clear;
  table.RegisterNatives = register_natives;
  return table;
}

}  // namespace

const JNINativeInterface_ environment_functions = make_functions();

Reference *make(Env &env, const std::string &type, const std::string &text) {
  return &env.references.emplace_back(Reference{type, text, {}, &env});
}

int unreleased_characters() { return obtained_characters.load(std::memory_order_relaxed); }

void forget_references() {
  thread_env()->references.clear();
  thread_env()->methods.clear();
}

void deliver(const char *text) {
  Env &env = *attach();
  native_method.load(std::memory_order_relaxed)(
      &env, nullptr, text ? as<jstring>(make(env, "java/lang/String", text)) : nullptr);
}

}  // namespace fake
