#include "bridge/status_texts.h"

#include "vantiro/status.h"

namespace vantiro {
namespace {

struct StatusText {
  int code;
  char text[56];
};

constexpr StatusText status_texts[] = {
    {VANTIRO_OK, "OK"},
    {VANTIRO_ERROR_NOT_INITIALIZED, "Java is not initialized"},
    {VANTIRO_ERROR_METHOD_NOT_FOUND, "Java method could not be found"},
    {VANTIRO_ERROR_UNCAUGHT_EXCEPTION, "Uncaught exception thrown from Java"},
    {VANTIRO_ERROR_CONSTRUCTOR_MISSING, "Unable to find the constructor of Management Interface"},
    {VANTIRO_ERROR_INITIALIZER_MISSING, "Unable to find the initializer of Management Interface"},
    {VANTIRO_ERROR_INITIALIZATION, "Unable to initialize Management Interface"},
    {VANTIRO_ERROR_UNKNOWN, "Unknown error"},
    {VANTIRO_ERROR_JAVA_NOT_FOUND, "Unable to find Java"},
    {VANTIRO_ERROR_JAVA_VERSION, "Unable to find Java version"},
    {VANTIRO_ERROR_JAVA_KEYPATH, "Unable to find Java keypath"},
    {VANTIRO_ERROR_RUNTIME_LOCATION, "Unable to find Java runtime library location"},
    {VANTIRO_ERROR_RUNTIME_NOT_FOUND, "Unable to find Java runtime library"},
    {VANTIRO_ERROR_BUFFER_TOO_SMALL, "String buffer is too small."},
    {VANTIRO_ERROR_INDEX_OUT_OF_BOUNDS, "File index is out of bounds."},
    {VANTIRO_ERROR_INVALID_VARIANT, "VARIANT type is invalid, BSTR expected."},
};

// Callers of long standing expect 54 bytes: the text and two NULs.
constexpr char not_initialized_block[] = "No Error Message available; Java is not initialized.\0";
static_assert(sizeof not_initialized_block == 54);

}  // namespace

const char *native_text(int code) {
  for (const StatusText &status : status_texts) {
    if (status.code == code) return status.text;
  }
  return nullptr;
}

int explained(int status, CallerBuffer out) {
  if (status == VANTIRO_ERROR_NOT_INITIALIZED) {
    out.put(not_initialized_block, sizeof not_initialized_block);
  }
  return status;
}

}  // namespace vantiro
