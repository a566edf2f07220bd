/**
 * @file vantiro/projects.h
 * @brief Projects: what they are called and given, and their start and end.
 */
#ifndef VANTIRO_PROJECTS_H
#define VANTIRO_PROJECTS_H

#include "vantiro/jobs.h"
#include "vantiro/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/**
 * @defgroup projects Projects
 * @brief A number of jobs with a name, a priority and parameters; its life from creation to
 * removal.
 *
 * Functions that get the handle of a project give #VANTIRO_ERROR_UNCAUGHT_EXCEPTION when there is
 * none, or when it was removed.
 *
 * @code
 * int session = vantiro_open();
 * int project = vantiro_createProject(session, 5, "primes", 1, "limit=1000");
 * vantiro_createProjectJobs(project, 2, "primesieve -c 0 500", "primesieve -c 501 1000");
 * vantiro_markAllJobsCreated(project);
 * vantiro_startProject(project);
 * int status = vantiro_waitCompletion(project);  // 0, or why not
 * vantiro_removeProject(project);
 * vantiro_close(session);
 * @endcode
 * @{
 */

/**
 * @brief Creates a project with parameters: the Java method
 *        `createProject(int, int, String, String[])`.
 *
 * @param session   the handle of a session that is open (see vantiro_open())
 * @param priority  waiting jobs of a higher one go first, among all projects and runs that were
 *                  created since the last initialiser; 0 is usual, negative ones are less urgent.
 *                  Jobs find it as `VANTIRO_PRIORITY`
 * @param name      a name for messages and statistics, not null
 * @param count     the number of strings
 * @param ...       `count` parameters `key=value`, all `const char *` (see @ref strings_in), which
 *                  jobs find as `VANTIRO_PARAM_<key>`, with `_` for each character of the key that
 *                  is no letter, digit or `_`
 * @return the project's handle, positive; -4 when the session is closed; -1 when the grid's home
 *         cannot be written; or one of the @ref call_statuses, #VANTIRO_ERROR_UNCAUGHT_EXCEPTION
 *         for an unknown session or a parameter without `=`
 */
VANTIRO_API int vantiro_createProject(int session, int priority, const char *name, int count, ...);

/**
 * @brief As vantiro_createProject(), with the strings in an array.
 *
 * @param session   the handle of a session that is open
 * @param priority  higher goes first; 0 is usual
 * @param name      a name for messages and statistics, not null
 * @param count     the number of strings
 * @param list      the `count` parameters `key=value` (see @ref strings_in)
 * @return as vantiro_createProject()
 */
VANTIRO_API int vantiro_createProject2(int session, int priority, const char *name, int count,
                                       const char **list);

/**
 * @brief As vantiro_createProject(), with the strings in an array.
 *
 * @param session   the handle of a session that is open
 * @param priority  higher goes first; 0 is usual
 * @param name      a name for messages and statistics, not null
 * @param count     the number of strings
 * @param list      the `count` parameters `key=value` (see @ref strings_in)
 * @return as vantiro_createProject()
 */
VANTIRO_API int vantiro_createProject3(int session, int priority, const char *name, int count,
                                       const char **list);

/**
 * @brief Creates a project without parameters: the Java method `createProject(int, int, String)`.
 *
 * It has no jobs yet, as that of vantiro_createProject() has none.
 *
 * @param session   the handle of a session that is open
 * @param priority  higher goes first; 0 is usual
 * @param name      a name for messages and statistics, not null
 * @return as vantiro_createProject()
 */
VANTIRO_API int vantiro_createEmptyProject(int session, int priority, const char *name);

/**
 * @brief Sets parameters of a project: the Java method `setProjectParams(int, String[])`.
 *
 * Those with other names stay as they are. Jobs that have begun do not see the change. Two keys
 * that would be one variable, such as `a-b` and `a_b`, are refused.
 *
 * @param project  the project's handle
 * @param count    the number of strings
 * @param ...      `count` parameters `key=value`, all `const char *` (see @ref strings_in)
 * @return 0; or one of the @ref call_statuses, #VANTIRO_ERROR_UNCAUGHT_EXCEPTION for a parameter
 *         without `=`
 */
VANTIRO_API int vantiro_setProjectParams(int project, int count, ...);

/**
 * @brief As vantiro_setProjectParams(), with the strings in an array.
 *
 * @param project  the project's handle
 * @param count    the number of strings
 * @param list     the `count` parameters `key=value` (see @ref strings_in)
 * @return as vantiro_setProjectParams()
 */
VANTIRO_API int vantiro_setProjectParams2(int project, int count, const char **list);

/**
 * @brief As vantiro_setProjectParams(), with the strings in an array.
 *
 * @param project  the project's handle
 * @param count    the number of strings
 * @param list     the `count` parameters `key=value` (see @ref strings_in)
 * @return as vantiro_setProjectParams()
 */
VANTIRO_API int vantiro_setProjectParams3(int project, int count, const char **list);

/**
 * @brief Gives the number of parameters of a project: the Java method `getProjectParamCount(int)`.
 *
 * @param project  the project's handle
 * @return the number; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_getProjectParamCount(int project);

/**
 * @brief Gives the name of one parameter of a project: the Java methods `getProjectParamCount(int)`
 *        and `getProjectParamName(int, int)`.
 *
 * They come in the order in which they were first set.
 *
 * @param project  the project's handle
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
 * @param project  the project's handle
 * @param name     the name of the parameter, not null
 * @param buffer   receives the value (see @ref string_buffers)
 * @param size     in: the capacity of `buffer`; out: the length plus 1
 * @return #VANTIRO_OK; #VANTIRO_ERROR_BUFFER_TOO_SMALL; or one of the @ref call_statuses
 * @note Nothing on null, which means that there is no parameter of that name.
 */
VANTIRO_API int vantiro_getProjectParamValue(int project, const char *name, char *buffer,
                                             unsigned int *size);

/**
 * @brief Gives a line about a project for people: the Java method `getProjectDescription(int)`.
 *
 * It has the project's name, number, priority, number of jobs and state.
 *
 * @param project  the project's handle
 * @param buffer   receives the description (see @ref string_buffers)
 * @param size     in: the capacity of `buffer`; out: the length plus 1
 * @return #VANTIRO_OK; #VANTIRO_ERROR_BUFFER_TOO_SMALL; or one of the @ref call_statuses
 * @note Nothing on null.
 */
VANTIRO_API int vantiro_getProjectDescription(int project, char *buffer, unsigned int *size);

/**
 * @brief Gives the number of a project: the Java method `getProjectId(int)`.
 *
 * Unlike the handle, no other project in the grid's home has it, also of other programs; it is in
 * the names of directories (`project-<number>`), and jobs find it as `VANTIRO_PROJECT`.
 *
 * @param project  the project's handle
 * @return the number; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_getProjectId(int project);

/**
 * @brief Gives a project another number: the Java method `setProjectId(int, int)`.
 *
 * It can be changed until the project is started. A project that a program left which is gone gives
 * its number up and gets another one.
 *
 * @param project  the project's handle
 * @param id       the number, 0 or more
 * @return 0; -4 when the project was started or stopped, or when a project of a program that lives
 *         has that number; -10 for a negative number; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_setProjectId(int project, int id);

/**
 * @brief Tells how many jobs run at once: the Java method `addUserClientsToProject(int)`.
 *
 * It changes nothing: all processors of the setting `grid.processors` serve all projects.
 *
 * @param project  the project's handle
 * @return the number of processors; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_addUserClientsToProject(int project);

/**
 * @brief Lets a project's jobs run: the Java method `startProject(int)`.
 *
 * It returns at once. Jobs may have been created before, and may be created afterwards. What
 * environment, umask and limits the program has now, its jobs have. A start that failed has changed
 * nothing and can be repeated.
 *
 * @param project  the project's handle
 * @return 0; -4 when it was started or stopped before, or in a set-user-ID program; -8 when
 *         `vantiro-keeper` is not beside `vantiro.jar` or does not start; or one of the
 *         @ref call_statuses
 */
VANTIRO_API int vantiro_startProject(int project);

/**
 * @brief Stops a project: the Java method `stopProject(int)`.
 *
 * Its running jobs are killed with all processes that they started, the waiting ones dropped, and
 * it returns when that is done. A project that has completed stays as it is. It cannot be started
 * again; its results, those of the killed jobs included, can be downloaded.
 *
 * @param project  the project's handle
 * @return 0; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_stopProject(int project);

/**
 * @brief Stops a project, deletes its files in the grid's home and forgets it: the Java method
 *        `removeProject(int)`.
 *
 * What was downloaded or unpacked elsewhere stays. A removal that failed can be repeated.
 *
 * @param project  the project's handle
 * @return 0; -1 when a file cannot be deleted; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_removeProject(int project);

/** @} */

#ifdef __cplusplus
}
#endif

#endif
