/**
 * @file vantiro/projects.h
 * @brief Creating, starting, stopping and removing projects, their parameters and their jobs.
 *
 * What the integers, strings and lists mean, and what the Java results mean, is the Java library's.
 * For the local grid, "Arguments" in `java/README.md` names them one by one (@ref arguments).
 */
#ifndef VANTIRO_PROJECTS_H
#define VANTIRO_PROJECTS_H

#include "vantiro/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/**
 * @brief Creates a project with a list of strings: the Java method
 *        `createProject(int, int, String, String[])`.
 *
 * @param value1,value2  passed unchanged, in this order
 * @param text           passed unchanged (see @ref strings_in)
 * @param count          the number of strings
 * @param ...            `count` strings, all `const char *` (see @ref strings_in)
 * @return the Java result, unchanged; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_createProject(int value1, int value2, const char *text, int count, ...);

/**
 * @brief As vantiro_createProject(), with the strings in an array.
 *
 * @param value1,value2  passed unchanged, in this order
 * @param text           passed unchanged (see @ref strings_in)
 * @param count          the number of strings
 * @param list           the `count` strings (see @ref strings_in)
 * @return the Java result, unchanged; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_createProject2(int value1, int value2, const char *text, int count,
                                       const char **list);

/**
 * @brief As vantiro_createProject(), with the strings in an array.
 *
 * @param value1,value2  passed unchanged, in this order
 * @param text           passed unchanged (see @ref strings_in)
 * @param count          the number of strings
 * @param list           the `count` strings (see @ref strings_in)
 * @return the Java result, unchanged; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_createProject3(int value1, int value2, const char *text, int count,
                                       const char **list);

/**
 * @brief Creates a project without a list: the Java method `createProject(int, int, String)`.
 *
 * @param value1,value2  passed unchanged, in this order
 * @param text           passed unchanged (see @ref strings_in)
 * @return the Java result, unchanged; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_createEmptyProject(int value1, int value2, const char *text);

/**
 * @brief Sets project parameters: the Java method `setProjectParams(int, String[])`.
 *
 * @param project  the project's handle, as the Java library gave it out
 * @param count    the number of strings
 * @param ...      `count` strings, all `const char *` (see @ref strings_in)
 * @return the Java result, unchanged; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_setProjectParams(int project, int count, ...);

/**
 * @brief As vantiro_setProjectParams(), with the strings in an array.
 *
 * @param project  the project's handle, as the Java library gave it out
 * @param count    the number of strings
 * @param list     the `count` strings (see @ref strings_in)
 * @return the Java result, unchanged; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_setProjectParams2(int project, int count, const char **list);

/**
 * @brief As vantiro_setProjectParams(), with the strings in an array.
 *
 * @param project  the project's handle, as the Java library gave it out
 * @param count    the number of strings
 * @param list     the `count` strings (see @ref strings_in)
 * @return the Java result, unchanged; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_setProjectParams3(int project, int count, const char **list);

/**
 * @brief Creates project-wide jobs: the Java method `createProjectJobs(int, String[])`.
 *
 * @param project  the project's handle, as the Java library gave it out
 * @param count    the number of strings
 * @param ...      `count` strings, all `const char *` (see @ref strings_in)
 * @return the Java result, unchanged; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_createProjectJobs(int project, int count, ...);

/**
 * @brief As vantiro_createProjectJobs(), with the strings in an array.
 *
 * @param project  the project's handle, as the Java library gave it out
 * @param count    the number of strings
 * @param list     the `count` strings (see @ref strings_in)
 * @return the Java result, unchanged; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_createProjectJobs2(int project, int count, const char **list);

/**
 * @brief As vantiro_createProjectJobs(), with the strings in an array.
 *
 * @param project  the project's handle, as the Java library gave it out
 * @param count    the number of strings
 * @param list     the `count` strings (see @ref strings_in)
 * @return the Java result, unchanged; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_createProjectJobs3(int project, int count, const char **list);

/**
 * @brief Creates a job: the Java method `createJob(int, String[])`.
 *
 * @param project  the project's handle, as the Java library gave it out
 * @param count    the number of strings
 * @param ...      `count` strings, all `const char *` (see @ref strings_in)
 * @return the Java result, unchanged; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_createJob(int project, int count, ...);

/**
 * @brief As vantiro_createJob(), with the strings in an array.
 *
 * @param project  the project's handle, as the Java library gave it out
 * @param count    the number of strings
 * @param list     the `count` strings (see @ref strings_in)
 * @return the Java result, unchanged; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_createJob2(int project, int count, const char **list);

/**
 * @brief As vantiro_createJob(), with the strings in an array.
 *
 * @param project  the project's handle, as the Java library gave it out
 * @param count    the number of strings
 * @param list     the `count` strings (see @ref strings_in)
 * @return the Java result, unchanged; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_createJob3(int project, int count, const char **list);

/**
 * @brief Creates a cached job: the Java method `createCachedJob(int, String[])`.
 *
 * @param project  the project's handle, as the Java library gave it out
 * @param count    the number of strings
 * @param ...      `count` strings, all `const char *` (see @ref strings_in)
 * @return the Java result, unchanged; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_createCachedJob(int project, int count, ...);

/**
 * @brief As vantiro_createCachedJob(), with the strings in an array.
 *
 * @param project  the project's handle, as the Java library gave it out
 * @param count    the number of strings
 * @param list     the `count` strings (see @ref strings_in)
 * @return the Java result, unchanged; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_createCachedJob2(int project, int count, const char **list);

/**
 * @brief As vantiro_createCachedJob(), with the strings in an array.
 *
 * @param project  the project's handle, as the Java library gave it out
 * @param count    the number of strings
 * @param list     the `count` strings (see @ref strings_in)
 * @return the Java result, unchanged; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_createCachedJob3(int project, int count, const char **list);

/**
 * @brief Flushes the cache of jobs: the Java method `flushCachedJobs(int)`.
 *
 * @param project  the project's handle, as the Java library gave it out
 * @return the Java result, unchanged; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_flushCachedJobs(int project);

/**
 * @brief Marks that all jobs are created: the Java method `markAllJobsCreated(int)`.
 *
 * @param project  the project's handle, as the Java library gave it out
 * @return the Java result, unchanged; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_markAllJobsCreated(int project);

/**
 * @brief Starts a project: the Java method `startProject(int)`.
 *
 * @param project  the project's handle, as the Java library gave it out
 * @return the Java result, unchanged; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_startProject(int project);

/**
 * @brief Stops a project: the Java method `stopProject(int)`.
 *
 * @param project  the project's handle, as the Java library gave it out
 * @return the Java result, unchanged; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_stopProject(int project);

/**
 * @brief Removes a project: the Java method `removeProject(int)`.
 *
 * @param project  the project's handle, as the Java library gave it out
 * @return the Java result, unchanged; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_removeProject(int project);

/**
 * @brief Adds user clients to a project: the Java method `addUserClientsToProject(int)`.
 *
 * @param project  the project's handle, as the Java library gave it out
 * @return the Java result, unchanged; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_addUserClientsToProject(int project);

/**
 * @brief Sends a post parameter to a job: the Java method
 *        `sendJobPostParameter(int, long, String)`.
 *
 * @param project  the project's handle, as the Java library gave it out
 * @param job      the number of the job, sign-extended to the Java `long`
 * @param text     passed unchanged (see @ref strings_in)
 * @return the Java result, unchanged; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_sendJobPostParameter(int project, int job, const char *text);

/**
 * @brief Gives the id of a project: the Java method `getProjectId(int)`.
 *
 * @param project  the project's handle, as the Java library gave it out
 * @return the Java result, unchanged; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_getProjectId(int project);

/**
 * @brief Sets the id of a project: the Java method `setProjectId(int, int)`.
 *
 * @param project  the project's handle, as the Java library gave it out
 * @param value    the id; passed unchanged
 * @return the Java result, unchanged; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_setProjectId(int project, int value);

/**
 * @brief Gives the number of parameters of a project: the Java method `getProjectParamCount(int)`.
 *
 * @param project  the project's handle, as the Java library gave it out
 * @return the Java result, unchanged; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_getProjectParamCount(int project);

/**
 * @brief Gives the name of one parameter of a project: the Java methods `getProjectParamCount(int)`
 *        and `getProjectParamName(int, int)`.
 *
 * @param project  the project's handle, as the Java library gave it out
 * @param index    in: the position, from 0; out: the list's length (see @ref indexed_strings)
 * @param buffer   receives the name (see @ref string_buffers)
 * @param size     in: the capacity of `buffer`; out: the length plus 1
 * @return #VANTIRO_OK; #VANTIRO_ERROR_BUFFER_TOO_SMALL; #VANTIRO_ERROR_INDEX_OUT_OF_BOUNDS; or one
 *         of the @ref call_statuses
 */
VANTIRO_API int vantiro_getProjectParamName(int project, int *index, char *buffer,
                                            unsigned int *size);

/**
 * @brief Gives the value of a parameter of a project: the Java method
 *        `getProjectParamValue(int, String)`.
 *
 * @param project  the project's handle, as the Java library gave it out
 * @param text     passed unchanged (see @ref strings_in)
 * @param buffer   receives the value (see @ref string_buffers)
 * @param size     in: the capacity of `buffer`; out: the length plus 1
 * @return #VANTIRO_OK; #VANTIRO_ERROR_BUFFER_TOO_SMALL; or one of the @ref call_statuses
 * @note Nothing on null.
 */
VANTIRO_API int vantiro_getProjectParamValue(int project, const char *text, char *buffer,
                                             unsigned int *size);

/**
 * @brief Gives the description of a project: the Java method `getProjectDescription(int)`.
 *
 * @param project  the project's handle, as the Java library gave it out
 * @param buffer   receives the description (see @ref string_buffers)
 * @param size     in: the capacity of `buffer`; out: the length plus 1
 * @return #VANTIRO_OK; #VANTIRO_ERROR_BUFFER_TOO_SMALL; or one of the @ref call_statuses
 * @note Nothing on null.
 */
VANTIRO_API int vantiro_getProjectDescription(int project, char *buffer, unsigned int *size);

#ifdef __cplusplus
}
#endif

#endif
