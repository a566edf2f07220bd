// Paths in buffers of fixed size. What does not fit is treated like a file that does not open.
#pragma once

#include <cstddef>
#include <initializer_list>
#include <string_view>

namespace vantiro {

inline constexpr std::size_t path_capacity = 4096;

// Puts the parts, one behind the other, into `path` of `path_capacity` bytes. False, and `path` as
// it was, when they do not fit.
bool join(char *path, std::initializer_list<std::string_view> parts);

// Without its last '/' and what follows. A name without one lies in the current directory.
std::string_view directory_of(std::string_view file);

bool opens_for_reading(const char *path);

}  // namespace vantiro
