// The texts of the status codes that are the library's own.
#pragma once

#include "bridge/caller_buffer.h"

namespace vantiro {

// Null for a code that belongs to the Java library.
const char *native_text(int code);

// `status`, after telling a caller who asked for an explanation too early that there is none yet.
int explained(int status, CallerBuffer out);

}  // namespace vantiro
