// JNI descriptors, deduced from the C++ types of a call and laid down as text at compile time.
#pragma once

#include <cstddef>

namespace vantiro {

template <std::size_t Size>
struct Text {
  char characters[Size];

  constexpr Text() : characters{} {}
  constexpr Text(const char (&text)[Size]) : characters{} {
    for (std::size_t i = 0; i < Size; ++i) characters[i] = text[i];
  }
};

template <std::size_t Left, std::size_t Right>
constexpr Text<Left + Right - 1> operator+(const Text<Left> &left, const Text<Right> &right) {
  Text<Left + Right - 1> joined;
  for (std::size_t i = 0; i < Left - 1; ++i) joined.characters[i] = left.characters[i];
  for (std::size_t i = 0; i < Right; ++i) joined.characters[Left - 1 + i] = right.characters[i];
  return joined;
}

// What a parameter type is in a descriptor, given beside the type's conversion. There is no primary
// definition: a call with a type that has no place in Java does not compile.
template <typename T>
struct JavaType;

template <typename Result, typename... Arguments>
inline constexpr auto descriptor_text =
    (Text{"("} + ... + JavaType<Arguments>::name) + Text{")"} + Result::name;

// The descriptor of the Java method that takes what `Arguments` become and gives what `Result` is
// made of.
template <typename Result, typename... Arguments>
constexpr const char *descriptor() {
  return descriptor_text<Result, Arguments...>.characters;
}

}  // namespace vantiro
