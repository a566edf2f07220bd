// The strings of a variadic form, gathered for the array form.
#pragma once

#include <cstdarg>
#include <cstdlib>

namespace vantiro {

// How many strings follow one or two counts; a negative count stands for none.
inline std::size_t strings_of(int count1, int count2 = 0) {
  return static_cast<std::size_t>(count1 > 0 ? count1 : 0) +
         static_cast<std::size_t>(count2 > 0 ? count2 : 0);
}

class GatheredStrings {
 public:
  // Takes `total` strings from `arguments`. Without memory for them the list is null, which
  // reaches Java as a null array.
  GatheredStrings(std::size_t total, va_list arguments)
      : list_(static_cast<const char **>(std::calloc(total, sizeof *list_))) {
    for (std::size_t i = 0; list_ && i < total; ++i) list_[i] = va_arg(arguments, const char *);
  }
  ~GatheredStrings() { std::free(list_); }
  GatheredStrings(const GatheredStrings &) = delete;
  GatheredStrings &operator=(const GatheredStrings &) = delete;

  operator const char **() const { return list_; }

 private:
  const char **list_;
};

}  // namespace vantiro

// Declares `list`, which holds the `total` strings that follow the parameter `last`.
#define VANTIRO_GATHER(list, last, total)                       \
  va_list list##_arguments;                                     \
  va_start(list##_arguments, last);                             \
  const vantiro::GatheredStrings list(total, list##_arguments); \
  va_end(list##_arguments)
