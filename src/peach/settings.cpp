// The settings of a parallel-each run.
#include "vantiro/peach_settings.h"

#include "bridge/call.h"
#include "bridge/variadic.h"

using namespace vantiro;
using peach::call;

// Project settings of a run.

int vantiro_peach_setName(int handle, const char *text) {
  return call(Void{}, "setName", handle, text);
}

int vantiro_peach_setStateDir(int handle, const char *text) {
  return call(Void{}, "setStateDir", handle, text);
}

int vantiro_peach_setDescription(int handle, const char *text) {
  return call(Void{}, "setDescription", handle, text);
}

int vantiro_peach_setMessages(int handle, unsigned char value) {
  return call(Void{}, "setMessages", handle, value);
}

int vantiro_peach_setPriorityI(int handle, int value) {
  return call(Void{}, "setPriority", handle, value);
}

int vantiro_peach_setPriority(int handle, const char *text) {
  return call(Void{}, "setPriority", handle, text);
}

int vantiro_peach_setProjectId(int handle, int value) {
  return call(Void{}, "setProjectId", handle, value);
}

int vantiro_peach_setResultFile(int handle, const char *text) {
  return call(Void{}, "setResultFile", handle, text);
}

int vantiro_peach_setJobs(int handle, int value) {
  return call(Void{}, "setJobs", handle, value);
}

int vantiro_peach_setAllowPartial(int handle, unsigned char value) {
  return call(Void{}, "setAllowPartial", handle, value);
}

int vantiro_peach_setRemove(int handle, unsigned char value) {
  return call(Void{}, "setRemove", handle, value);
}

int vantiro_peach_setCleanup(int handle, unsigned char value) {
  return call(Void{}, "setCleanup", handle, value);
}

int vantiro_peach_setClose(int handle, unsigned char value) {
  return call(Void{}, "setClose", handle, value);
}

// Source files.

int vantiro_peach_addSourceFile(int handle, const char *text) {
  return call(Void{}, "addSourceFile", handle, text);
}

int vantiro_peach_putSourceExtras(int handle, const char *key, const char *value) {
  return call(Void{}, "putSourceExtras", handle, key, value);
}

// Executable and outputs.

int vantiro_peach_setExeBundleName(int handle, const char *text) {
  return call(Void{}, "setExeBundleName", handle, text);
}

int vantiro_peach_setExecutable(int handle, const char *text) {
  return call(Void{}, "setExecutable", handle, text);
}

int vantiro_peach_setExeSkipDigest(int handle, unsigned char value) {
  return call(Void{}, "setExeSkipDigest", handle, value);
}

int vantiro_peach_addExeFile(int handle, const char *first, const char *second, const char *third,
                             const char *fourth) {
  return call(Void{}, "addExeFile", handle, first, second, third, fourth);
}

int vantiro_peach_putExeExtras(int handle, const char *key, const char *value) {
  return call(Void{}, "putExeExtras", handle, key, value);
}

int vantiro_peach_addExeImport(int handle, const char *text) {
  return call(Void{}, "addExeImport", handle, text);
}

int vantiro_peach_addOutputFile(int handle, const char *text) {
  return call(Void{}, "addOutputFile", handle, text);
}

// Data bundles.

int vantiro_peach_newDataBundle(int handle) {
  return call(Void{}, "newDataBundle", handle);
}

int vantiro_peach_newDataBundleWithName(int handle, const char *text) {
  return call(Void{}, "newDataBundle", handle, text);
}

int vantiro_peach_setDataSkipDigest(int handle, unsigned char value) {
  return call(Void{}, "setDataSkipDigest", handle, value);
}

int vantiro_peach_addDataFile(int handle, const char *text) {
  return call(Void{}, "addDataFile", handle, text);
}

int vantiro_peach_addDataFileWithDir(int handle, const char *first, const char *second) {
  return call(Void{}, "addDataFileWithDir", handle, first, second);
}

int vantiro_peach_putDataExtras(int handle, const char *key, const char *value) {
  return call(Void{}, "putDataExtras", handle, key, value);
}

int vantiro_peach_setDataCopy(int handle, unsigned char value) {
  return call(Void{}, "setDataCopy", handle, value);
}

// Job files.

int vantiro_peach_setJobSkipDigest(int handle, unsigned char value) {
  return call(Void{}, "setJobSkipDigest", handle, value);
}

int vantiro_peach_setJobFileNames(int handle, int count, ...) {
  VANTIRO_GATHER(list, count, strings_of(count));
  return vantiro_peach_setJobFileNames3(handle, count, list);
}

int vantiro_peach_setJobFileNames3(int handle, int count, const char **list) {
  return call(Void{}, "setJobFileNames", handle, StringList{count, list});
}

int vantiro_peach_addJobFile(int handle, int count, ...) {
  VANTIRO_GATHER(list, count, strings_of(count));
  return vantiro_peach_addJobFile3(handle, count, list);
}

int vantiro_peach_addJobFile3(int handle, int count, const char **list) {
  return call(Void{}, "addJobFile", handle, StringList{count, list});
}

int vantiro_peach_addJobFileWithDir(int handle, const char *dir, int count, ...) {
  VANTIRO_GATHER(list, count, strings_of(count));
  return vantiro_peach_addJobFileWithDir3(handle, dir, count, list);
}

int vantiro_peach_addJobFileWithDir3(int handle, const char *dir, int count, const char **list) {
  return call(Void{}, "addJobFileWithDir", handle, dir, StringList{count, list});
}

int vantiro_peach_putJobExtras(int handle, const char *key, const char *value) {
  return call(Void{}, "putJobExtras", handle, key, value);
}

// Parameter files.

int vantiro_peach_setParamSkipDigest(int handle, unsigned char value) {
  return call(Void{}, "setParamSkipDigest", handle, value);
}

int vantiro_peach_addParamFile(int handle, const char *text) {
  return call(Void{}, "addParamFile", handle, text);
}

int vantiro_peach_addParamFileWithDir(int handle, const char *first, const char *second) {
  return call(Void{}, "addParamFileWithDir", handle, first, second);
}

int vantiro_peach_addParamFileWithTarget(int handle, const char *first, const char *second) {
  return call(Void{}, "addParamFile", handle, first, second);
}

int vantiro_peach_putParamExtras(int handle, const char *key, const char *value) {
  return call(Void{}, "putParamExtras", handle, key, value);
}

int vantiro_peach_addParamExternalResource(int handle, const char *text) {
  return call(Void{}, "addParamExternalResource", handle, text);
}

int vantiro_peach_setParamCopy(int handle, unsigned char value) {
  return call(Void{}, "setParamCopy", handle, value);
}

// Project parameters and streaming.

int vantiro_peach_putProjectParam(int handle, const char *key, const char *value) {
  return call(Void{}, "putProjectParam", handle, key, value);
}

int vantiro_peach_setStream(int handle, unsigned char value) {
  return call(Void{}, "setStream", handle, value);
}
