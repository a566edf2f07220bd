/**
 * @file vantiro.hpp
 * @brief What makes the functions of `vantiro.h` easy to call from C++17: statuses as exceptions,
 *        strings and lists as such, and scopes for what Java keeps. Header-only; no JDK is needed.
 *
 * @code
 * vantiro::call(vantiro_init);
 * const int run = vantiro::call(vantiro_peach_handle);
 * vantiro::call(vantiro_peach_setName, run, "first");
 * vantiro::call(vantiro_peach_execute, run);
 * for (std::string path; !(path = vantiro::text(vantiro_peach_nextFile, run)).empty();) use(path);
 * @endcode
 *
 * Strings are in Java's modified UTF-8 (see @ref strings_in).
 */
#ifndef VANTIRO_HPP
#define VANTIRO_HPP

#ifndef VANTIRO_NO_HOST_STATE
#define VANTIRO_NO_HOST_STATE
#endif
#include <vantiro.h>

#include <cstdio>
#include <exception>
#include <functional>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace vantiro {

/** @brief The failure of a function: its status, and as what() the status's text. */
class error : public std::runtime_error {
 public:
  /**
   * @param status  the status
   * @param text    its text
   */
  error(int status, const std::string &text)
      : std::runtime_error(text + " (status " + std::to_string(status) + ")"), status_(status) {}
  /** @return the status, negative */
  int status() const noexcept { return status_; }

 private:
  int status_;
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

[[noreturn]] inline void fail(int status) {
  std::string text;
  if (ask(text, vantiro_describeStatusCode, status) != VANTIRO_OK) {
    text = "A status of Java, which is not there to describe it";
  }
  throw error(status, text);
}

}  // namespace detail

/**
 * @brief Throws an error with the text of a status when that is negative.
 *
 * @param status  what a function of the library returned
 * @return the same status
 */
inline int check(int status) {
  if (status < 0) detail::fail(status);
  return status;
}

/**
 * @brief Calls a function of the library in a frame of its own, and checks its status.
 *
 * @param function   for example vantiro_startProject
 * @param arguments  its arguments
 * @return its status, not negative
 */
template <typename Function, typename... Arguments>
int call(Function function, Arguments... arguments) {
  const frame scope;
  return check(function(arguments...));
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

/** @brief Receives an intermediate result; may be called by several Java threads at once. */
using receiver = std::function<void(const std::string &)>;

namespace detail {

struct receiver_slot {
  std::mutex mutex;
  std::shared_ptr<const receiver> present;
};

// Never destroyed: a Java thread may deliver until the very end of the process.
inline receiver_slot &the_receiver() {
  static auto *const slot = new receiver_slot;
  return *slot;
}

inline std::shared_ptr<const receiver> present_receiver() {
  const std::lock_guard lock(the_receiver().mutex);
  return the_receiver().present;
}

inline void deliver(const char *text) noexcept {
  const auto present = present_receiver();
  if (!text || !present || !*present) return;
  try {
    (*present)(text);
  } catch (const std::exception &problem) {
    std::fprintf(stderr, "vantiro: the receiver of a result threw: %s\n", problem.what());
  } catch (...) {
    std::fputs("vantiro: the receiver of a result threw\n", stderr);
  }
}

}  // namespace detail

/**
 * @brief Has the intermediate results of a run delivered to any callable.
 *
 * The callable is kept until another takes its place: there is one for the process, and it receives
 * the results of every run that has a receiver. An empty one ends the delivery. What it throws is
 * written to standard error, and the run goes on.
 *
 * @param run   the handle of the run
 * @param next  what receives from now on
 */
inline void set_receiver(int run, receiver next) {
  call(vantiro_peach_setIntermediateResultHandler, run, next ? detail::deliver : nullptr);
  auto kept = std::make_shared<const receiver>(std::move(next));
  const std::lock_guard lock(detail::the_receiver().mutex);
  detail::the_receiver().present.swap(kept);
}

}  // namespace vantiro

#endif
