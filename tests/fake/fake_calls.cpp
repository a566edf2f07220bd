// The functions of the Java Native Interface that run a Java method or constructor.
#include <cstdarg>
#include <cstring>
#include <type_traits>

#include "fake_state.h"

namespace fake {
namespace {

std::string decoded(const Env &env, const Method &method, va_list values) {
  std::string text;
  for (const char *type = method.descriptor.c_str() + 1; *type != ')'; ++type) {
    text += ' ';
    if (*type == 'I' || *type == 'Z') {
      text += std::to_string(va_arg(values, int));
    } else if (*type == 'J') {
      text += std::to_string(va_arg(values, jlong)) + 'L';
    } else if (*type == 'L' || *type == '[') {
      text += described(checked(env, va_arg(values, jobject)));
      while (*type == '[') ++type;
      if (*type == 'L') type = std::strchr(type, ';');
    } else {
      die(method.name + method.descriptor + " has a parameter of a kind that the fake lacks");
    }
  }
  return text;
}

jvalue run(Env &env, const std::string &function, const Method &method, va_list values) {
  record(function + " " + method.name + decoded(env, method, values));
  const Behaviour behaviour = behaviour_of(method.name);
  jvalue result{};
  // A method that is called while an exception is pending does not run.
  if (raises(env, function) || !env.pending.empty()) return result;
  const std::string type = method.descriptor.substr(method.descriptor.find(')') + 1);
  if (behaviour.throws) {
    env.pending = method.name + " threw";
  } else if (type.size() == 1) {
    result.j = behaviour.number;
  } else if (!behaviour.null) {
    result.l = as<jobject>(make(env, type.substr(1, type.size() - 2), behaviour.text));
  }
  return result;
}

struct Kind {
  const char *function;
  const char *type;
};
constexpr Kind int_kind{"CallIntMethod", "I"};
constexpr Kind boolean_kind{"CallBooleanMethod", "Z"};
constexpr Kind long_kind{"CallLongMethod", "J"};
constexpr Kind void_kind{"CallVoidMethod", "V"};
constexpr Kind object_kind{"CallObjectMethod", "L"};
constexpr Kind static_kind{"CallStaticObjectMethod", "L"};
constexpr Kind constructor_kind{"NewObject", "V"};

const Method &required_method(jmethodID id, const Kind &kind) {
  const auto *const method = reinterpret_cast<const Method *>(id);
  if (!method) die(std::string("null was given as a method to ") + kind.function);
  if (method->descriptor.find(std::string(")") + kind.type) == method->descriptor.npos) {
    die(kind.function + (" does not fit " + method->name) + method->descriptor);
  }
  return *method;
}

template <const Kind &kind, typename Result, typename Target>
Result call(JNIEnv *jni, Target target, jmethodID id, ...) {
  Env &env = checked(jni);
  const Method &method = required_method(id, kind);
  const Reference &object = required(env, target, kind.function);
  if ((object.type == "java/lang/Class" ? object.text : object.type) != method.type) {
    die(method.name + " was called on an object of another class");
  }
  va_list values;
  va_start(values, id);
  const jvalue result = run(env, kind.function, method, values);
  va_end(values);
  if constexpr (std::is_same_v<Result, jobject>) {
    return result.l;
  } else {
    return static_cast<Result>(result.j);
  }
}

jobject new_object(JNIEnv *jni, jclass type, jmethodID constructor, ...) {
  Env &env = checked(jni);
  required_method(constructor, constructor_kind);
  const std::string name = required(env, type, "NewObject").text;
  record("NewObject " + short_name(name));
  return raises(env, "NewObject") ? nullptr : as<jobject>(make(env, name));
}

}  // namespace

void add_calls(JNINativeInterface_ &table) {
  table.NewObject = new_object;
  table.CallIntMethod = call<int_kind, jint>;
  table.CallBooleanMethod = call<boolean_kind, jboolean>;
  table.CallLongMethod = call<long_kind, jlong>;
  table.CallObjectMethod = call<object_kind, jobject>;
  table.CallVoidMethod = call<void_kind, void>;
  table.CallStaticObjectMethod = call<static_kind, jobject>;
}

}  // namespace fake
