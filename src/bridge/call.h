// How an exported function reaches its Java method. The management object and the parallel-each
// object are called in two orders of the same steps, which stand side by side below. Both are
// inlined into every exported function: one that hands on to a shared copy finds its way to the
// library's variables twice, which is felt on a fast runtime.
#pragma once

#include <jni.h>

#include <tuple>
#include <type_traits>

#include "bridge/arguments.h"
#include "bridge/results.h"
#include "bridge/steps.h"

namespace vantiro {

// The first of two steps that make Java's arguments, apart since the calls on the management object
// clear an earlier exception in between: lists become arrays, all else stays as it is.
template <typename T>
auto make_arrays([[maybe_unused]] JNIEnv *jni, T argument) {
  if constexpr (requires { JavaType<T>::arrays(jni, argument); }) {
    return JavaType<T>::arrays(jni, argument);
  } else {
    return std::tuple<T>(argument);
  }
}

template <typename... Arguments>
auto with_arrays([[maybe_unused]] JNIEnv *jni, Arguments... arguments) {
  return std::tuple_cat(make_arrays(jni, arguments)...);
}

// The second step: what is no array yet is converted.
template <typename T>
auto to_java([[maybe_unused]] JNIEnv *jni, T value) {
  if constexpr (std::is_convertible_v<T, jobject>) {
    return value;
  } else {
    return JavaType<T>::convert(jni, value);
  }
}

template <typename Result, typename... Values>
auto invoke(JNIEnv *jni, jobject object, jmethodID method, const std::tuple<Values...> &values) {
  return std::apply(
      [&](auto... value) { return Result::call(jni, object, method, to_java(jni, value)...); },
      values);
}

// Lists are built before an earlier exception is cleared, and a look-up that fails leaves its own
// exception pending for the next call to clear.
template <typename Result, typename... Arguments>
[[gnu::always_inline]] inline int test_then_clear(JNIEnv *jni, Target target, const Result &result,
                                                  const char *name, Arguments... arguments) {
  const jmethodID method = jni->GetMethodID(target.type, name, descriptor<Result, Arguments...>());
  if (!method) return VANTIRO_ERROR_METHOD_NOT_FOUND;
  const auto values = with_arrays(jni, arguments...);
  jni->ExceptionClear();
  const auto answer = invoke<Result>(jni, target.object, method, values);
  if (threw(jni)) return VANTIRO_ERROR_UNCAUGHT_EXCEPTION;
  return result.deliver(jni, answer);
}

// Nothing is pending after a look-up that fails, and no argument is looked at before.
template <typename Result, typename... Arguments>
[[gnu::always_inline]] inline int clear_then_test(JNIEnv *jni, Target target, const Result &result,
                                                  const char *name, Arguments... arguments) {
  const jmethodID method = jni->GetMethodID(target.type, name, descriptor<Result, Arguments...>());
  jni->ExceptionClear();
  if (!method) return VANTIRO_ERROR_METHOD_NOT_FOUND;
  const auto values = with_arrays(jni, arguments...);
  const auto answer = invoke<Result>(jni, target.object, method, values);
  if (threw(jni)) return VANTIRO_ERROR_UNCAUGHT_EXCEPTION;
  return result.deliver(jni, answer);
}

namespace management {

template <typename Result, typename... Arguments>
[[gnu::always_inline]] inline int call(const Result &result, const char *name,
                                       Arguments... arguments) {
  const Target target = management_object();
  JNIEnv *const jni = enter(target);
  if (!jni) return VANTIRO_ERROR_NOT_INITIALIZED;
  return test_then_clear(jni, target, result, name, arguments...);
}

}  // namespace management

namespace peach {

template <typename Result, typename... Arguments>
[[gnu::always_inline]] inline int call(const Result &result, const char *name,
                                       Arguments... arguments) {
  const Target target = peach_object();
  JNIEnv *const jni = enter(target);
  if (!jni) return VANTIRO_ERROR_NOT_INITIALIZED;
  return clear_then_test(jni, target, result, name, arguments...);
}

}  // namespace peach

}  // namespace vantiro
