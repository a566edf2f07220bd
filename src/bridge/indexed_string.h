// One string out of a list that the Java side keeps.
#pragma once

#include "bridge/caller_buffer.h"

namespace vantiro::management {

// `count_method` is a Java method (int) that gives the length of the list, `element_method` one
// (int, int) that gives an element; both take `handle` first.
int indexed_string(const char *count_method, const char *element_method, int handle, int *index,
                   CallerBuffer out);

}  // namespace vantiro::management
