// Projects and their jobs.
#include "vantiro/projects.h"

#include "bridge/call.h"
#include "bridge/indexed_string.h"
#include "bridge/variadic.h"

using namespace vantiro;
using management::call;
using management::indexed_string;

int vantiro_createProject(int value1, int value2, const char *text, int count, ...) {
  VANTIRO_GATHER(list, count, strings_of(count));
  return vantiro_createProject2(value1, value2, text, count, list);
}

int vantiro_createProject2(int value1, int value2, const char *text, int count, const char **list) {
  return call(Int{}, "createProject", value1, value2, text, StringList{count, list});
}

int vantiro_createProject3(int value1, int value2, const char *text, int count, const char **list) {
  return vantiro_createProject2(value1, value2, text, count, list);
}

int vantiro_createEmptyProject(int value1, int value2, const char *text) {
  return call(Int{}, "createProject", value1, value2, text);
}

int vantiro_setProjectParams(int project, int count, ...) {
  VANTIRO_GATHER(list, count, strings_of(count));
  return vantiro_setProjectParams2(project, count, list);
}

int vantiro_setProjectParams2(int project, int count, const char **list) {
  return call(Int{}, "setProjectParams", project, StringList{count, list});
}

int vantiro_setProjectParams3(int project, int count, const char **list) {
  return vantiro_setProjectParams2(project, count, list);
}

int vantiro_createProjectJobs(int project, int count, ...) {
  VANTIRO_GATHER(list, count, strings_of(count));
  return vantiro_createProjectJobs2(project, count, list);
}

int vantiro_createProjectJobs2(int project, int count, const char **list) {
  return call(Int{}, "createProjectJobs", project, StringList{count, list});
}

int vantiro_createProjectJobs3(int project, int count, const char **list) {
  return vantiro_createProjectJobs2(project, count, list);
}

int vantiro_createJob(int project, int count, ...) {
  VANTIRO_GATHER(list, count, strings_of(count));
  return vantiro_createJob2(project, count, list);
}

int vantiro_createJob2(int project, int count, const char **list) {
  return call(Int{}, "createJob", project, StringList{count, list});
}

int vantiro_createJob3(int project, int count, const char **list) {
  return vantiro_createJob2(project, count, list);
}

int vantiro_createCachedJob(int project, int count, ...) {
  VANTIRO_GATHER(list, count, strings_of(count));
  return vantiro_createCachedJob2(project, count, list);
}

int vantiro_createCachedJob2(int project, int count, const char **list) {
  return call(Int{}, "createCachedJob", project, StringList{count, list});
}

int vantiro_createCachedJob3(int project, int count, const char **list) {
  return vantiro_createCachedJob2(project, count, list);
}

int vantiro_flushCachedJobs(int project) { return call(Int{}, "flushCachedJobs", project); }

int vantiro_markAllJobsCreated(int project) { return call(Int{}, "markAllJobsCreated", project); }

int vantiro_startProject(int project) { return call(Int{}, "startProject", project); }

int vantiro_stopProject(int project) { return call(Int{}, "stopProject", project); }

int vantiro_removeProject(int project) { return call(Int{}, "removeProject", project); }

int vantiro_addUserClientsToProject(int project) {
  return call(Int{}, "addUserClientsToProject", project);
}

int vantiro_sendJobPostParameter(int project, int job, const char *text) {
  return call(Int{}, "sendJobPostParameter", project, Long{job}, text);
}

int vantiro_getProjectId(int project) { return call(Int{}, "getProjectId", project); }

int vantiro_setProjectId(int project, int value) {
  return call(Int{}, "setProjectId", project, value);
}

int vantiro_getProjectParamCount(int project) {
  return call(Int{}, "getProjectParamCount", project);
}

int vantiro_getProjectParamName(int project, int *index, char *buffer, unsigned int *size) {
  return indexed_string("getProjectParamCount", "getProjectParamName", project, index,
                        {buffer, size});
}

int vantiro_getProjectParamValue(int project, const char *text, char *buffer, unsigned int *size) {
  return call(String({buffer, size}, nothing_on_null), "getProjectParamValue", project, text);
}

int vantiro_getProjectDescription(int project, char *buffer, unsigned int *size) {
  return call(String({buffer, size}, nothing_on_null), "getProjectDescription", project);
}
