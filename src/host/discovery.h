// Where the library lies, and which Java runtime library it is to load. Nothing here fails: what
// cannot be read leads to the next place.
#pragma once

#include <cstddef>
#include <string_view>

namespace vantiro {

inline constexpr std::size_t path_capacity = 4096;

// The directory of this library's own file; its data is null when the loader does not tell.
std::string_view library_directory();

// Fills `path`, of `path_capacity` bytes, with what `dlopen` is to be given.
void find_runtime(std::string_view directory, char *path);

}  // namespace vantiro
