/**
 * @file vantiro/jobs.h
 * @brief Creating the jobs of a project, and writing to them.
 */
#ifndef VANTIRO_JOBS_H
#define VANTIRO_JOBS_H

#include "vantiro/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/**
 * @defgroup jobs Creating jobs
 * @ingroup projects
 * @brief Command lines or programs, created one by one or together.
 *
 * Each job runs in an empty directory of its own, into which the bundles of its project are
 * unpacked. All files that it creates or changes there are its results, `stdout` and `stderr` among
 * them. A job fails when its exit status is not 0, when it cannot be run, and when it takes longer
 * than the setting `job.timeout`; others go on. Jobs are numbered from 1, in the order of their
 * creation.
 *
 * | Variable | Value |
 * |---|---|
 * | `VANTIRO_JOB`, `VANTIRO_JOBS` | the job's number; how many jobs there were when it started |
 * | `VANTIRO_PROJECT`, `VANTIRO_PRIORITY` | the number and the priority of its project |
 * | `VANTIRO_PARAM_<key>` | each parameter of its project |
 * | `VANTIRO_NAME` | a name that no other job has, of all programs that share the home |
 * | `VANTIRO_WORKDIR`, `TMPDIR` | its working directory; the setting `temp.dir` |
 *
 * All other variables are the program's own.
 *
 * @code
 * const char *lines[] = {"sort < /data/a | uniq -c > counts", "sort < /data/b | uniq -c > counts"};
 * vantiro_createProjectJobs2(project, 2, lines);                      // the shell runs these
 * int job = vantiro_createJob(project, 3, "/bin/echo", "$HOME", ";");  // no shell: prints $HOME ;
 * vantiro_markAllJobsCreated(project);
 * @endcode
 * @{
 */

/**
 * @brief Creates a job for each of several command lines: the Java method
 *        `createProjectJobs(int, String[])`.
 *
 * `/bin/sh` runs them. When one is refused none is created.
 *
 * @param project  the project's handle
 * @param count    the number of strings
 * @param ...      `count` command lines, all `const char *` (see @ref strings_in)
 * @return the number of jobs created; -4 when all jobs are marked as created, or the project was
 *         stopped; or one of the @ref call_statuses, #VANTIRO_ERROR_UNCAUGHT_EXCEPTION for a null
 */
VANTIRO_API int vantiro_createProjectJobs(int project, int count, ...);

/**
 * @brief As vantiro_createProjectJobs(), with the strings in an array.
 *
 * @param project  the project's handle
 * @param count    the number of strings
 * @param list     the `count` command lines (see @ref strings_in)
 * @return as vantiro_createProjectJobs()
 */
VANTIRO_API int vantiro_createProjectJobs2(int project, int count, const char **list);

/**
 * @brief As vantiro_createProjectJobs(), with the strings in an array.
 *
 * @param project  the project's handle
 * @param count    the number of strings
 * @param list     the `count` command lines (see @ref strings_in)
 * @return as vantiro_createProjectJobs()
 */
VANTIRO_API int vantiro_createProjectJobs3(int project, int count, const char **list);

/**
 * @brief Creates a job that runs a program with arguments, without a shell: the Java method
 *        `createJob(int, String[])`.
 *
 * @param project  the project's handle
 * @param count    the number of strings, 1 or more
 * @param ...      the program, by its path or looked for in `PATH`, then its arguments, all
 *                 `const char *` (see @ref strings_in)
 * @return the job's number, from 1; -4 when all jobs are marked as created, or the project was
 *         stopped; or one of the @ref call_statuses, #VANTIRO_ERROR_UNCAUGHT_EXCEPTION without a
 *         program or for a null
 */
VANTIRO_API int vantiro_createJob(int project, int count, ...);

/**
 * @brief As vantiro_createJob(), with the strings in an array.
 *
 * @param project  the project's handle
 * @param count    the number of strings, 1 or more
 * @param list     the program and its arguments (see @ref strings_in)
 * @return as vantiro_createJob()
 */
VANTIRO_API int vantiro_createJob2(int project, int count, const char **list);

/**
 * @brief As vantiro_createJob(), with the strings in an array.
 *
 * @param project  the project's handle
 * @param count    the number of strings, 1 or more
 * @param list     the program and its arguments (see @ref strings_in)
 * @return as vantiro_createJob()
 */
VANTIRO_API int vantiro_createJob3(int project, int count, const char **list);

/**
 * @brief Keeps a job aside until vantiro_flushCachedJobs(): the Java method
 *        `createCachedJob(int, String[])`.
 *
 * So no job of a project that is started runs before all of a group are there.
 *
 * @param project  the project's handle
 * @param count    the number of strings, 1 or more
 * @param ...      a program and its arguments, as for vantiro_createJob()
 * @return how many jobs are aside now; -4 when all jobs are marked as created, or the project was
 *         stopped; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_createCachedJob(int project, int count, ...);

/**
 * @brief As vantiro_createCachedJob(), with the strings in an array.
 *
 * @param project  the project's handle
 * @param count    the number of strings, 1 or more
 * @param list     the program and its arguments (see @ref strings_in)
 * @return as vantiro_createCachedJob()
 */
VANTIRO_API int vantiro_createCachedJob2(int project, int count, const char **list);

/**
 * @brief As vantiro_createCachedJob(), with the strings in an array.
 *
 * @param project  the project's handle
 * @param count    the number of strings, 1 or more
 * @param list     the program and its arguments (see @ref strings_in)
 * @return as vantiro_createCachedJob()
 */
VANTIRO_API int vantiro_createCachedJob3(int project, int count, const char **list);

/**
 * @brief Creates the jobs that were kept aside: the Java method `flushCachedJobs(int)`.
 *
 * @param project  the project's handle
 * @return how many jobs were created, 0 when none was aside; -4 when the project was stopped; or
 *         one of the @ref call_statuses
 */
VANTIRO_API int vantiro_flushCachedJobs(int project);

/**
 * @brief Says that no more jobs follow: the Java method `markAllJobsCreated(int)`.
 *
 * Without it a project does not complete: more jobs could come. It can be called before
 * vantiro_startProject() or after it.
 *
 * @param project  the project's handle
 * @return 0; -4 while jobs are aside, which vantiro_flushCachedJobs() creates; or one of the
 *         @ref call_statuses
 */
VANTIRO_API int vantiro_markAllJobsCreated(int project);

/**
 * @brief Writes a line to the standard input of a job: the Java method
 *        `sendJobPostParameter(int, long, String)`.
 *
 * A job that has not begun finds it when it does. Standard input stays open as long as a job runs,
 * so one that reads to the end of its input does not end by itself.
 *
 * @param project  the project's handle
 * @param job      the number of the job, from 1, sign-extended to the Java `long`
 * @param text     the line, without its end, not null
 * @return 0; -4 when the job has ended; or one of the @ref call_statuses,
 *         #VANTIRO_ERROR_UNCAUGHT_EXCEPTION for a job that does not exist
 */
VANTIRO_API int vantiro_sendJobPostParameter(int project, int job, const char *text);

/** @} */

#ifdef __cplusplus
}
#endif

#endif
