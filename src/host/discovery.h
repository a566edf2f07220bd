// Which Java runtime library is to be loaded. Nothing here fails: what cannot be read leads to the
// next place.
#pragma once

#include <string_view>

#include "host/path.h"

namespace vantiro {

// One search.
struct Search {
  char *path;                                            // receives what is found
  bool (*opens)(const char *path) = &opens_for_reading;  // is asked about each place in order

  // Whether the place with that path opens; `path` holds the last one that was asked about.
  bool finds(std::initializer_list<std::string_view> parts) const;
};

// The value of a configuration line whose key is JVMPATH, else null. Cuts the line into pieces.
const char *runtime_named_by(char *line);

// The sources, in the order in which they are asked. Each tells whether it gave a path.
bool find_in_configuration(const Search &search, std::string_view library_directory);
bool find_in_java_home(const Search &search);
bool find_in_path(const Search &search);

// What `dlopen` is to be given: of the first source that gives a path, or else a bare name.
void find_runtime(const Search &search, std::string_view library_directory);

}  // namespace vantiro
