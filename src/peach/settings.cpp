// The settings of a parallel-each run.
#include "vantiro/peach_settings.h"

#include "bridge/call.h"
#include "bridge/variadic.h"

using namespace vantiro;

namespace {

// Every setting is a Java method without a result.
template <typename... Arguments>
int set(const char *method, int handle, Arguments... arguments) {
  return peach::call(Void{}, method, handle, arguments...);
}

}  // namespace

// Project settings of a run.

int vantiro_peach_setName(int handle, const char *text) { return set("setName", handle, text); }

int vantiro_peach_setStateDir(int handle, const char *text) {
  return set("setStateDir", handle, text);
}

int vantiro_peach_setDescription(int handle, const char *text) {
  return set("setDescription", handle, text);
}

int vantiro_peach_setMessages(int handle, unsigned char value) {
  return set("setMessages", handle, value);
}

int vantiro_peach_setPriorityI(int handle, int value) { return set("setPriority", handle, value); }

int vantiro_peach_setPriority(int handle, const char *text) {
  return set("setPriority", handle, text);
}

int vantiro_peach_setProjectId(int handle, int value) { return set("setProjectId", handle, value); }

int vantiro_peach_setResultFile(int handle, const char *text) {
  return set("setResultFile", handle, text);
}

int vantiro_peach_setJobs(int handle, int value) { return set("setJobs", handle, value); }

int vantiro_peach_setAllowPartial(int handle, unsigned char value) {
  return set("setAllowPartial", handle, value);
}

int vantiro_peach_setRemove(int handle, unsigned char value) {
  return set("setRemove", handle, value);
}

int vantiro_peach_setCleanup(int handle, unsigned char value) {
  return set("setCleanup", handle, value);
}

int vantiro_peach_setClose(int handle, unsigned char value) {
  return set("setClose", handle, value);
}

// Source files.

int vantiro_peach_addSourceFile(int handle, const char *text) {
  return set("addSourceFile", handle, text);
}

int vantiro_peach_putSourceExtras(int handle, const char *key, const char *value) {
  return set("putSourceExtras", handle, key, value);
}

// Executable and outputs.

int vantiro_peach_setExeBundleName(int handle, const char *text) {
  return set("setExeBundleName", handle, text);
}

int vantiro_peach_setExecutable(int handle, const char *text) {
  return set("setExecutable", handle, text);
}

int vantiro_peach_setExeSkipDigest(int handle, unsigned char value) {
  return set("setExeSkipDigest", handle, value);
}

int vantiro_peach_addExeFile(int handle, const char *first, const char *second, const char *third,
                             const char *fourth) {
  return set("addExeFile", handle, first, second, third, fourth);
}

int vantiro_peach_putExeExtras(int handle, const char *key, const char *value) {
  return set("putExeExtras", handle, key, value);
}

int vantiro_peach_addExeImport(int handle, const char *text) {
  return set("addExeImport", handle, text);
}

int vantiro_peach_addOutputFile(int handle, const char *text) {
  return set("addOutputFile", handle, text);
}

// Data bundles.

int vantiro_peach_newDataBundle(int handle) { return set("newDataBundle", handle); }

int vantiro_peach_newDataBundleWithName(int handle, const char *text) {
  return set("newDataBundle", handle, text);
}

int vantiro_peach_setDataSkipDigest(int handle, unsigned char value) {
  return set("setDataSkipDigest", handle, value);
}

int vantiro_peach_addDataFile(int handle, const char *text) {
  return set("addDataFile", handle, text);
}

int vantiro_peach_addDataFileWithDir(int handle, const char *first, const char *second) {
  return set("addDataFileWithDir", handle, first, second);
}

int vantiro_peach_putDataExtras(int handle, const char *key, const char *value) {
  return set("putDataExtras", handle, key, value);
}

int vantiro_peach_setDataCopy(int handle, unsigned char value) {
  return set("setDataCopy", handle, value);
}

// Job files.

int vantiro_peach_setJobSkipDigest(int handle, unsigned char value) {
  return set("setJobSkipDigest", handle, value);
}

int vantiro_peach_setJobFileNames(int handle, int count, ...) {
  VANTIRO_GATHER(list, count, strings_of(count));
  return vantiro_peach_setJobFileNames3(handle, count, list);
}

int vantiro_peach_setJobFileNames3(int handle, int count, const char **list) {
  return set("setJobFileNames", handle, StringList{count, list});
}

int vantiro_peach_addJobFile(int handle, int count, ...) {
  VANTIRO_GATHER(list, count, strings_of(count));
  return vantiro_peach_addJobFile3(handle, count, list);
}

int vantiro_peach_addJobFile3(int handle, int count, const char **list) {
  return set("addJobFile", handle, StringList{count, list});
}

int vantiro_peach_addJobFileWithDir(int handle, const char *dir, int count, ...) {
  VANTIRO_GATHER(list, count, strings_of(count));
  return vantiro_peach_addJobFileWithDir3(handle, dir, count, list);
}

int vantiro_peach_addJobFileWithDir3(int handle, const char *dir, int count, const char **list) {
  return set("addJobFileWithDir", handle, dir, StringList{count, list});
}

int vantiro_peach_putJobExtras(int handle, const char *key, const char *value) {
  return set("putJobExtras", handle, key, value);
}

// Parameter files.

int vantiro_peach_setParamSkipDigest(int handle, unsigned char value) {
  return set("setParamSkipDigest", handle, value);
}

int vantiro_peach_addParamFile(int handle, const char *text) {
  return set("addParamFile", handle, text);
}

int vantiro_peach_addParamFileWithDir(int handle, const char *first, const char *second) {
  return set("addParamFileWithDir", handle, first, second);
}

int vantiro_peach_addParamFileWithTarget(int handle, const char *first, const char *second) {
  return set("addParamFile", handle, first, second);
}

int vantiro_peach_putParamExtras(int handle, const char *key, const char *value) {
  return set("putParamExtras", handle, key, value);
}

int vantiro_peach_addParamExternalResource(int handle, const char *text) {
  return set("addParamExternalResource", handle, text);
}

int vantiro_peach_setParamCopy(int handle, unsigned char value) {
  return set("setParamCopy", handle, value);
}

// Project parameters and streaming.

int vantiro_peach_putProjectParam(int handle, const char *key, const char *value) {
  return set("putProjectParam", handle, key, value);
}

int vantiro_peach_setStream(int handle, unsigned char value) {
  return set("setStream", handle, value);
}
