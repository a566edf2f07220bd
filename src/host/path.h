// Paths in buffers of fixed size. What does not fit is treated like a file that does not open.
#pragma once

#include <initializer_list>
#include <string_view>

namespace vantiro {

// Puts the parts, one behind the other, into `path` of `path_capacity` bytes. False, and `path` as
// it was, when they do not fit.
bool join(char *path, std::initializer_list<std::string_view> parts);

bool opens_for_reading(const char *path);

// Whether one of `locations` below `base` opens; `path` holds the last one that was tried.
bool find_below(std::string_view base, std::initializer_list<std::string_view> locations,
                char *path);

}  // namespace vantiro
