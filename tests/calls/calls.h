// Every exported function that reaches Java by one call, and what is to arrive there.
#pragma once

#include <vantiro.h>

#include <cstring>
#include <ostream>
#include <string>
#include <vector>

// The places that calls write to, and the flag that some of them pass on.
struct Places {
  char buffer[64];
  unsigned int size = sizeof buffer;
  int index = 2;
  vantiro_jobject plugin = nullptr;
  bool flag;

  explicit Places(bool flag_passed = false) : flag(flag_passed) {
    std::memset(buffer, '#', sizeof buffer);
  }
  bool untouched() const {
    return size == sizeof buffer && index == 2 && !plugin &&
           std::string(buffer, sizeof buffer) == std::string(sizeof buffer, '#');
  }
};

struct Call {
  // Of the Java side: name, parameters and result as in a descriptor but with S for String and A
  // for String[], and the arguments. $flag and $other stand for the flag and its opposite.
  const char *record;
  const char *text;
  int (*make)(Places &out);

  std::string expected(bool flag) const;
  bool is(const char *function) const;
  bool is_indexed() const;
  // The letter of the Java result, of the first one when there are two.
  char result() const;
  bool gives_string() const { return is_indexed() || result() == 'S'; }
};
inline std::ostream &operator<<(std::ostream &stream, const Call &call) {
  return stream << call.text;
}

// In these, `OUT` are the string buffer's arguments, `out` the places.
#define CALL(record, ...)                                                                 \
  Call {                                                                                  \
    record, #__VA_ARGS__, []([[maybe_unused]] Places &out) -> int { return __VA_ARGS__; } \
  }
#define OUT out.buffer, &out.size

// Lists of strings as variadic arguments and as arrays, and as they are recorded.
#define THREE 3, "one", "", "twö"
#define THREE_RECORDED " ['one' '' 'tw<f6>']"
#define FIVE 2, 3, "un", "du", "one", "", "twö"
#define FIVE_RECORDED " ['un' 'du']" THREE_RECORDED
inline const char *five_strings[] = {"un", "du", "one", "", "twö"};
#define THREE_IN_ARRAY 3, five_strings + 2
#define FIVE_IN_ARRAY 2, 3, five_strings

std::vector<Call> management_calls();
std::vector<Call> peach_calls();
std::vector<Call> all_calls();
