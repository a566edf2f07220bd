// What the parts of the fake runtime share.
#pragma once

#include <jni.h>

#include <deque>
#include <map>
#include <string>
#include <vector>

namespace fake {

extern const JNINativeInterface_ environment_functions;

struct Env;

struct Reference {
  std::string type;  // the class of the object
  std::string text;  // a string's text, a class's name
  std::vector<const Reference *> elements;
  const Env *owner;  // the thread where it is valid; null: everywhere
  bool deleted = false;
};

struct Method {
  std::string type;
  std::string name;
  std::string descriptor;
};

// What a thread has. Nothing is shared, so that a tool which looks for races between threads sees
// those of the library: locks in here would hide them.
struct Env : JNIEnv_ {
  Env() : JNIEnv_{&environment_functions} {}
  std::string pending;
  std::deque<Reference> references;
  std::deque<Method> methods;
  std::map<const char *, const Reference *> characters;
};

struct Behaviour {
  bool throws = false;
  bool null = false;
  jlong number = 0;
  std::string text;
};

[[noreturn]] void die(const std::string &message);
[[noreturn]] void forbidden();

void record(const std::string &line);
bool fails(const std::string &function);
bool is_missing(const std::string &what);
Behaviour behaviour_of(const std::string &method);

// The calling thread's environment; null while it is not attached.
Env *&thread_env();
Env *attach();

Reference *make(Env &env, const std::string &type, const std::string &text = "");

// The environment, which must be the calling thread's.
Env &checked(JNIEnv *jni);
// The object of a reference, which must be valid in the thread. Null is let through.
Reference *checked(const Env &env, jobject object);
Reference &required(const Env &env, jobject object, const std::string &function);

// Whether the function is to fail; an exception is pending then.
bool raises(Env &env, const std::string &function);

std::string short_name(const std::string &type);
std::string described(const Reference *reference);

template <typename Type>
Type as(Reference *reference) {
  return reinterpret_cast<Type>(reference);
}

void add_calls(JNINativeInterface_ &table);

}  // namespace fake
