// Following a project, and collecting what it produced.
#include "vantiro/results.h"

#include "bridge/call.h"
#include "bridge/indexed_string.h"

using namespace vantiro;
using management::call;
using management::indexed_string;

int vantiro_actionWait(int value) { return call(Boolean{}, "actionWait", Long{value}); }

int vantiro_waitCompletion(int handle) { return call(Int{}, "waitCompletion", handle); }

int vantiro_waitCompletionBG(int handle) { return call(Int{}, "waitCompletionBG", handle); }

int vantiro_stopWaitingBG(int handle) { return call(Int{}, "stopWaitingBG", handle); }

int vantiro_isCompleted(int handle) { return call(Boolean{}, "isCompleted", handle); }

int vantiro_isFailed(int handle) { return call(Boolean{}, "isFailed", handle); }

int vantiro_isJobCompleted(int handle, int job) {
  return call(Boolean{}, "isJobCompleted", handle, Long{job});
}

int vantiro_getProjectStatus(int handle) { return call(Int{}, "getProjectStatus", handle); }

int vantiro_getUsedTime(int handle) { return call(LowInt{}, "getUsedTime", handle); }

int vantiro_getUsedCpuTime(int handle) { return call(LowInt{}, "getUsedCpuTime", handle); }

int vantiro_getProjectStatistic(int handle, const char *name, char *buffer, unsigned int *size) {
  return call(String({buffer, size}, nothing_on_null), "getProjectStatistic", handle, name);
}

int vantiro_setDownloadDir(int handle, const char *directory) {
  return call(Int{}, "setDownloadDir", handle, directory);
}

int vantiro_setUnzipDir(int handle, const char *directory) {
  return call(Int{}, "setUnzipDir", handle, directory);
}

int vantiro_downloadResult(int handle) { return call(Int{}, "downloadResult", handle); }

int vantiro_downloadPartialResult(int handle) {
  return call(Int{}, "downloadResult", handle, jboolean{JNI_TRUE});
}

int vantiro_unzip(int handle) { return call(Int{}, "unzip", handle); }

int vantiro_unzipFile(const char *first, const char *second, const char *third) {
  return call(Int{}, "unzipFile", first, second, third);
}

int vantiro_setStreamResults(int handle, unsigned char stream) {
  return call(Int{}, "setStreamResults", handle, stream);
}

int vantiro_getStreamedResultFilesCount(int handle) {
  return call(Int{}, "getStreamedResultFilesCount", handle);
}

int vantiro_getStreamedResultFiles(int handle, int *index, char *buffer, unsigned int *size) {
  return indexed_string("getStreamedResultFilesCount", "getStreamedResultFileName", handle, index,
                        {buffer, size});
}

int vantiro_getResultFiles(int handle, int *index, char *buffer, unsigned int *size) {
  return indexed_string("getResultFileCount", "getResultFileName", handle, index, {buffer, size});
}

int vantiro_getResultFile(int handle, char *buffer, unsigned int *size) {
  return call(String({buffer, size}, nothing_on_null), "getResultFile", handle);
}

int vantiro_getResultDirectory(int handle, char *buffer, unsigned int *size) {
  return call(String({buffer, size}, nothing_on_null), "getResultDirectory", handle);
}
