#include "bridge/call.h"

int call_with(ARGUMENT argument);

int call_with(ARGUMENT argument) {
  return vantiro::management::call(vantiro::Int{}, "open", argument);
}
