// A whole parallel-each run by one call on the management object.
#include "bridge/call.h"
#include "bridge/variadic.h"
#include "vantiro/peach.h"

using namespace vantiro;
using management::call;

int vantiro_peach(int count, ...) {
  VANTIRO_GATHER(list, count, strings_of(count));
  return vantiro_peach2(count, list);
}

int vantiro_peach2(int count, const char **list) {
  return call(Int{}, "peach", StringList{count, list});
}

int vantiro_peach3(int count, const char **list) { return vantiro_peach2(count, list); }

int vantiro_peachNextFile(int handle, char *buffer, unsigned int *size) {
  return call(String({buffer, size}, nothing_on_null), "peachNextFile", handle);
}

int vantiro_peachDone(int handle) { return call(Void{}, "peachDone", handle); }
