// The functions that report errors.
#include "vantiro/status.h"

#include <cstring>

#include "bridge/call.h"
#include "bridge/status_texts.h"

using vantiro::EmptyOnNull;
using vantiro::Int;
using vantiro::management::call;

int vantiro_describeStatusCode(int code, char *buffer, unsigned int *size) {
  const EmptyOnNull out(buffer, size);
  const char *const text = vantiro::native_text(code);
  if (text) return out.put(text, static_cast<unsigned int>(std::strlen(text)) + 1);
  return call(out, "describeStatusCode", code);
}

int vantiro_getLastError(int value) { return call(Int{}, "getLastError", value); }

int vantiro_getLastErrorMessage(char *buffer, unsigned int *size) {
  const EmptyOnNull out(buffer, size);
  return vantiro::explained(call(out, "getLastErrorMessage"), out);
}
