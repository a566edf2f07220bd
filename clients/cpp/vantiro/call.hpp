/**
 * @file vantiro/call.hpp
 * @brief Any function of the library from C++: statuses as exceptions, strings and lists as such,
 *        and scopes for what Java keeps.
 */
#ifndef VANTIRO_CALL_HPP
#define VANTIRO_CALL_HPP

#ifndef VANTIRO_NO_HOST_STATE
#define VANTIRO_NO_HOST_STATE
#endif
#include <vantiro.h>

#include <filesystem>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace vantiro {

/** @brief The failure of a function: its status, the status's text, and what the Java side said. */
class error : public std::runtime_error {
 public:
  /**
   * @param status   the status
   * @param text     its text
   * @param message  the last message of the Java side; empty when there is none
   */
  error(int status, const std::string &text, const std::string &message = {})
      : std::runtime_error(text + " (status " + std::to_string(status) + ")" +
                           (message.empty() ? "" : ": " + message)),
        status_(status),
        text_(text),
        message_(message) {}
  /** @return the status, negative */
  int status() const noexcept { return status_; }
  /** @return the text of the status */
  const char *text() const noexcept { return text_.what(); }
  /** @return the last message of the Java side; empty when it has none */
  const char *message() const noexcept { return message_.what(); }

 private:
  int status_;
  // Exceptions are copied without throwing, which strings are not.
  std::runtime_error text_, message_;
};

namespace detail {

// The functions of the Java Native Interface stand in tables of pointers that the machine and the
// thread's environment begin with; it fixes their positions for all versions.
enum : int { attach_current_thread = 4, detach_current_thread = 5, get_env = 6 };
enum : int { push_local_frame = 19, pop_local_frame = 20 };
constexpr int jni_version_1_6 = 0x00010006;
constexpr int references_of_a_frame = 256;

template <typename Result, typename... Arguments>
Result from_table(void *target, int position, Arguments... arguments) {
  void *const function = (*static_cast<void ***>(target))[position];
  return reinterpret_cast<Result (*)(void *, Arguments...)>(function)(target, arguments...);
}

// Null while the Java machine is not started.
inline void *machine() { return vantiro_getJNIEnv() ? vantiro_getJavaVM() : nullptr; }

inline void *attached() {
  void *env = nullptr;
  if (void *const vm = machine()) {
    from_table<int, void **, void *>(vm, attach_current_thread, &env, nullptr);
  }
  return env;
}

inline bool is_attached() {
  void *env = nullptr;
  void *const vm = machine();
  return vm && from_table<int, void **, int>(vm, get_env, &env, jni_version_1_6) == VANTIRO_OK;
}

}  // namespace detail

/**
 * @brief A scope at whose end Java may forget the strings of the calls made in it.
 *
 * The functions below have one for each call. It is for plain calls of the C functions.
 */
class frame {
 public:
  frame() : env_(detail::attached()) {
    if (env_ && detail::from_table<int, int>(env_, detail::push_local_frame,
                                             detail::references_of_a_frame) != 0) {
      env_ = nullptr;
    }
  }
  ~frame() {
    if (env_) detail::from_table<void *, void *>(env_, detail::pop_local_frame, nullptr);
  }
  frame(const frame &) = delete;
  frame &operator=(const frame &) = delete;

 private:
  void *env_;
};

/**
 * @brief A scope at whose end the thread leaves the Java machine, unless it belonged to it before.
 *
 * It goes around all calls of a thread that ends before the program: the machine keeps for ever
 * what belongs to a thread that has ended without leaving.
 */
class attachment {
 public:
  attachment() : was_attached_(detail::is_attached()) {}
  ~attachment() {
    void *const vm = detail::machine();
    if (vm && !was_attached_) detail::from_table<int>(vm, detail::detach_current_thread);
  }
  attachment(const attachment &) = delete;
  attachment &operator=(const attachment &) = delete;

 private:
  bool was_attached_;
};

namespace detail {

// A second call of the same Java method is needed for a longer text, and one such as
// vantiro_peach_nextFile then answers with what comes next. Any path fits.
constexpr unsigned int usual_capacity = 8192;

template <typename Function, typename... Arguments>
int ask(std::string &text, Function function, Arguments... arguments) {
  static_assert(std::is_invocable_r_v<int, Function, Arguments..., char *, unsigned int *>,
                "give a function that returns a string, and its arguments before the buffer");
  const frame scope;
  char buffer[usual_capacity];
  unsigned int size = usual_capacity;
  int status = function(arguments..., buffer, &size);
  if (status == VANTIRO_OK) text.assign(buffer, size ? size - 1 : 0);
  while (status == VANTIRO_ERROR_BUFFER_TOO_SMALL) {
    text.resize(size);
    status = function(arguments..., text.data(), &size);
    if (status == VANTIRO_OK) text.resize(size ? size - 1 : 0);
  }
  return status;
}

inline std::string describe(int status) {
  std::string text;
  if (ask(text, vantiro_describeStatusCode, status) != VANTIRO_OK) {
    text = "A status of Java, which is not there to describe it";
  }
  return text;
}

// Of a call that never got to Java, the last message is of another one.
inline bool is_of_java(int status) {
  return status == VANTIRO_ERROR_UNCAUGHT_EXCEPTION || status > VANTIRO_ERROR_NOT_INITIALIZED ||
         status < VANTIRO_ERROR_INVALID_VARIANT;
}

template <typename Function, typename... Arguments>
[[noreturn]] void fail(int status, Function last_message, Arguments... arguments) {
  std::string message;
  if (is_of_java(status)) ask(message, last_message, arguments...);
  throw error(status, describe(status), message);
}

inline unsigned char argument(bool flag) { return flag; }
inline const char *argument(const std::string &text) { return text.c_str(); }
inline const char *argument(const std::filesystem::path &path) { return path.c_str(); }
inline const char *argument(const char *text) { return text; }
template <typename T>
auto argument(T value) {
  return value;
}

// Of numbers alone Java makes nothing that a frame would have to hold.
template <typename Function, typename... Arguments>
int perform(Function function, const Arguments &...arguments) {
  if constexpr ((std::is_arithmetic_v<Arguments> && ...)) {
    return function(argument(arguments)...);
  } else {
    const frame scope;
    return function(argument(arguments)...);
  }
}

}  // namespace detail

/**
 * @brief Throws an error with the text of a status when that is negative.
 *
 * @param status  what a function of the library returned
 * @return the same status
 */
inline int check(int status) {
  if (status < 0) detail::fail(status, vantiro_getLastErrorMessage);
  return status;
}

/**
 * @brief Calls a function of the library and checks its status.
 *
 * Strings and paths pass as such, `true` and `false` as flags. A call with anything but numbers has
 * a frame of its own; one with numbers costs what the plain one does. (A reference to the exception
 * of a status -13 then stays until the thread leaves Java, or a frame around it ends.)
 *
 * @param function   for example vantiro_startProject
 * @param arguments  its arguments
 * @return its status, not negative
 */
template <typename Function, typename... Arguments>
int call(Function function, const Arguments &...arguments) {
  return check(detail::perform(function, arguments...));
}

/**
 * @brief Calls a function that returns a string; empty when Java has none.
 *
 * @param function   for example vantiro_peach_nextFile
 * @param arguments  those before the buffer
 * @return the string
 */
template <typename Function, typename... Arguments>
std::string text(Function function, Arguments... arguments) {
  std::string answer;
  check(detail::ask(answer, function, arguments...));
  return answer;
}

/**
 * @brief Calls a function that returns one string of a list, for each of them.
 *
 * @param function  for example vantiro_getResultFiles
 * @param handle    its handle
 * @return the strings
 */
inline std::vector<std::string> list(int (*function)(int, int *, char *, unsigned int *),
                                     int handle) {
  std::vector<std::string> strings;
  int count = 1;
  while (static_cast<int>(strings.size()) < count) {
    int position = static_cast<int>(strings.size());
    std::string element;
    const int status = detail::ask(element, function, handle, &position);
    if (status == VANTIRO_ERROR_INDEX_OUT_OF_BOUNDS) break;
    check(status);
    strings.push_back(std::move(element));
    count = position;
  }
  return strings;
}

}  // namespace vantiro

#endif
