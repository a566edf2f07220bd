// The functions that report errors.
#include "vantiro/status.h"

#include <cstring>

#include "bridge/call.h"
#include "bridge/status_texts.h"

using namespace vantiro;
using management::call;

int vantiro_describeStatusCode(int code, char *buffer, unsigned int *size) {
  const CallerBuffer out(buffer, size);
  const char *const text = native_text(code);
  if (text) return out.put(text, static_cast<unsigned int>(std::strlen(text)) + 1);
  return call(String(out, empty_on_null), "describeStatusCode", code);
}

int vantiro_getLastError(int value) { return call(Int{}, "getLastError", value); }

int vantiro_getLastErrorMessage(char *buffer, unsigned int *size) {
  const CallerBuffer out(buffer, size);
  return explained(call(String(out, empty_on_null), "getLastErrorMessage"), out);
}
