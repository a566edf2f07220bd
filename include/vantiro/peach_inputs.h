/**
 * @file vantiro/peach_inputs.h
 * @brief Describing a parallel-each run before it is executed: what its jobs find in their working
 *        directories and environments.
 */
#ifndef VANTIRO_PEACH_INPUTS_H
#define VANTIRO_PEACH_INPUTS_H

#include "vantiro/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/**
 * @defgroup each_inputs Inputs of the jobs
 * @ingroup each
 * @brief Files of each job, files and data of all jobs, and variables.
 *
 * All are called between vantiro_peach_handle() and vantiro_peach_execute(), which looks for the
 * files and gives -8 when one cannot be read. Jobs get copies of their own, with the permissions of
 * the files, or links (vantiro_peach_setParamCopy(), vantiro_peach_setDataCopy()). Two files that a
 * job would find under one name are refused with #VANTIRO_ERROR_UNCAUGHT_EXCEPTION, and both paths
 * in the text: by the call that adds the second, for files of one job by vantiro_peach_execute().
 * No input may be called `stdout` or `stderr`, which a job writes itself.
 *
 * @code
 * vantiro_peach_setJobFileNames(run, 2, "mesh", "load");        // as each job calls its files
 * vantiro_peach_addJobFile(run, 2, "wing.msh", "cruise.txt");   // job 1
 * vantiro_peach_addJobFile(run, 2, "wing.msh", "landing.txt");  // job 2
 * vantiro_peach_addParamFile(run, "solver.conf");               // all jobs
 * vantiro_peach_newDataBundleWithName(run, "materials");        // all jobs, in materials/
 * vantiro_peach_addDataFile(run, "steel.tab");
 * vantiro_peach_putParamExtras(run, "unit", "mm");              // VANTIRO_EXTRA_PARAM_unit
 * @endcode
 *
 * The variables that the `put` functions set end in the key, with `_` for each character that is no
 * letter, digit or `_`. Besides them each job has `VANTIRO_JOB`, `VANTIRO_JOBS` and the others of
 * @ref jobs.
 * @{
 */

/**
 * @name Files of one job
 * The n-th call of the functions that add job files is for job n.
 */
/**@{*/

/**
 * @brief Sets the names under which each job finds its files: the Java method
 *        `setJobFileNames(int, String[])`.
 *
 * The first name is for the first file of each job, and so on; files beyond the names keep their
 * own. It holds for all jobs, those added before included.
 *
 * @param run    the run's handle
 * @param count  the number of strings
 * @param ...    `count` names, all `const char *` (see @ref strings_in); they may lead through
 *               directories
 * @return #VANTIRO_OK; or one of the @ref peach_statuses
 */
VANTIRO_API int vantiro_peach_setJobFileNames(int run, int count, ...);

/**
 * @brief As vantiro_peach_setJobFileNames(), with the strings in an array.
 *
 * @param run    the run's handle
 * @param count  the number of strings
 * @param list   the `count` names (see @ref strings_in)
 * @return #VANTIRO_OK; or one of the @ref peach_statuses
 */
VANTIRO_API int vantiro_peach_setJobFileNames3(int run, int count, const char **list);

/**
 * @brief Adds the files of the next job: the Java method `addJobFile(int, String[])`.
 *
 * The jobs of a run are as many as these calls, unless vantiro_peach_setJobs() says more.
 *
 * @param run    the run's handle
 * @param count  the number of strings; 0 for a job without files
 * @param ...    `count` files of this machine, all `const char *` (see @ref strings_in)
 * @return #VANTIRO_OK; or one of the @ref peach_statuses
 */
VANTIRO_API int vantiro_peach_addJobFile(int run, int count, ...);

/**
 * @brief As vantiro_peach_addJobFile(), with the strings in an array.
 *
 * @param run    the run's handle
 * @param count  the number of strings
 * @param list   the `count` files (see @ref strings_in)
 * @return #VANTIRO_OK; or one of the @ref peach_statuses
 */
VANTIRO_API int vantiro_peach_addJobFile3(int run, int count, const char **list);

/**
 * @brief Adds the files of the next job, which finds them in a directory: the Java method
 *        `addJobFileWithDir(int, String, String[])`.
 *
 * @param run    the run's handle
 * @param dir    the directory below the working directory; empty: the working directory itself
 * @param count  the number of strings
 * @param ...    `count` files of this machine, all `const char *` (see @ref strings_in)
 * @return #VANTIRO_OK; or one of the @ref peach_statuses
 */
VANTIRO_API int vantiro_peach_addJobFileWithDir(int run, const char *dir, int count, ...);

/**
 * @brief As vantiro_peach_addJobFileWithDir(), with the strings in an array.
 *
 * @param run    the run's handle
 * @param dir    the directory below the working directory; empty: the working directory itself
 * @param count  the number of strings
 * @param list   the `count` files (see @ref strings_in)
 * @return #VANTIRO_OK; or one of the @ref peach_statuses
 */
VANTIRO_API int vantiro_peach_addJobFileWithDir3(int run, const char *dir, int count,
                                                 const char **list);

/**
 * @brief Sets a variable of all jobs, `VANTIRO_EXTRA_JOB_<key>`: the Java method
 *        `putJobExtras(int, String, String)`.
 *
 * @param run    the run's handle
 * @param key    neither null nor empty
 * @param value  its value, not null
 * @return #VANTIRO_OK; or one of the @ref peach_statuses
 */
VANTIRO_API int vantiro_peach_putJobExtras(int run, const char *key, const char *value);

/**
 * @brief Has the archive of the job files written anew in each run: the Java method
 *        `setJobSkipDigest(int, boolean)`.
 *
 * That is faster where every run has files, or a state directory, of its own.
 *
 * @param run   the run's handle
 * @param flag  1 for yes; 0, the default: written only when a file changed
 * @return #VANTIRO_OK; or one of the @ref peach_statuses
 */
VANTIRO_API int vantiro_peach_setJobSkipDigest(int run, unsigned char flag);

/**@}*/

/**
 * @name Files of all jobs
 */
/**@{*/

/**
 * @brief Adds a file that every job finds in its working directory: the Java method
 *        `addParamFile(int, String)`.
 *
 * @param run   the run's handle
 * @param file  the file on this machine
 * @return #VANTIRO_OK; or one of the @ref peach_statuses
 */
VANTIRO_API int vantiro_peach_addParamFile(int run, const char *file);

/**
 * @brief Adds a file that every job finds in a directory: the Java method
 *        `addParamFileWithDir(int, String, String)`.
 *
 * @param run   the run's handle
 * @param file  the file on this machine
 * @param dir   the directory below the working directory; empty: the working directory itself
 * @return #VANTIRO_OK; or one of the @ref peach_statuses
 */
VANTIRO_API int vantiro_peach_addParamFileWithDir(int run, const char *file, const char *dir);

/**
 * @brief Adds a file that every job finds under another name: the Java method
 *        `addParamFile(int, String, String)`.
 *
 * @param run   the run's handle
 * @param file  the file on this machine
 * @param name  its name for the jobs, which may lead through directories; empty: the file's own
 * @return #VANTIRO_OK; or one of the @ref peach_statuses
 */
VANTIRO_API int vantiro_peach_addParamFileWithTarget(int run, const char *file, const char *name);

/**
 * @brief Adds a file or directory that every job finds as a link: the Java method
 *        `addParamExternalResource(int, String)`.
 *
 * For what is too large to be copied. The link has the last part of the path as its name.
 *
 * @param run       the run's handle
 * @param resource  an absolute path, or a `file:` URL; others are refused
 * @return #VANTIRO_OK; or one of the @ref peach_statuses
 */
VANTIRO_API int vantiro_peach_addParamExternalResource(int run, const char *resource);

/**
 * @brief Says whether jobs get copies of the files of all jobs, or links to them: the Java method
 *        `setParamCopy(int, boolean)`.
 *
 * @param run   the run's handle
 * @param flag  1, the default, for copies; 0 for links, through which a job can change the file
 * @return #VANTIRO_OK; or one of the @ref peach_statuses
 */
VANTIRO_API int vantiro_peach_setParamCopy(int run, unsigned char flag);

/**
 * @brief Sets a variable of all jobs, `VANTIRO_EXTRA_PARAM_<key>`: the Java method
 *        `putParamExtras(int, String, String)`.
 *
 * @param run    the run's handle
 * @param key    neither null nor empty
 * @param value  its value, not null
 * @return #VANTIRO_OK; or one of the @ref peach_statuses
 */
VANTIRO_API int vantiro_peach_putParamExtras(int run, const char *key, const char *value);

/**
 * @brief Has the archive of these files written anew in each run: the Java method
 *        `setParamSkipDigest(int, boolean)`.
 *
 * @param run   the run's handle
 * @param flag  1 for yes; 0, the default: written only when a file changed
 * @return #VANTIRO_OK; or one of the @ref peach_statuses
 */
VANTIRO_API int vantiro_peach_setParamSkipDigest(int run, unsigned char flag);

/**@}*/

/**
 * @name Data of all jobs
 * Groups of files, each of which may be copied or linked, and may have a directory of its own. The
 * functions below speak of the present group: that of the last vantiro_peach_newDataBundle() or
 * vantiro_peach_newDataBundleWithName(), or a first one that needs no announcement.
 */
/**@{*/

/**
 * @brief Begins a group of data files that jobs find in the working directory itself: the Java
 *        method `newDataBundle(int)`.
 *
 * @param run  the run's handle
 * @return #VANTIRO_OK; or one of the @ref peach_statuses
 */
VANTIRO_API int vantiro_peach_newDataBundle(int run);

/**
 * @brief Begins a group of data files that jobs find in a directory: the Java method
 *        `newDataBundle(int, String)`.
 *
 * @param run   the run's handle
 * @param name  the directory below the working directory; empty: the working directory itself
 * @return #VANTIRO_OK; or one of the @ref peach_statuses
 */
VANTIRO_API int vantiro_peach_newDataBundleWithName(int run, const char *name);

/**
 * @brief Adds a file to the present group: the Java method `addDataFile(int, String)`.
 *
 * @param run   the run's handle
 * @param file  the file on this machine
 * @return #VANTIRO_OK; or one of the @ref peach_statuses
 */
VANTIRO_API int vantiro_peach_addDataFile(int run, const char *file);

/**
 * @brief Adds a file to the present group, in a directory of its own: the Java method
 *        `addDataFileWithDir(int, String, String)`.
 *
 * @param run   the run's handle
 * @param file  the file on this machine
 * @param dir   the directory below that of the group; empty: that of the group
 * @return #VANTIRO_OK; or one of the @ref peach_statuses
 */
VANTIRO_API int vantiro_peach_addDataFileWithDir(int run, const char *file, const char *dir);

/**
 * @brief Says whether jobs get copies of the present group, or links: the Java method
 *        `setDataCopy(int, boolean)`.
 *
 * @param run   the run's handle
 * @param flag  1, the default, for copies; 0 for links, through which a job can change the file
 * @return #VANTIRO_OK; or one of the @ref peach_statuses
 */
VANTIRO_API int vantiro_peach_setDataCopy(int run, unsigned char flag);

/**
 * @brief Sets a variable of all jobs, `VANTIRO_EXTRA_DATA_<key>`: the Java method
 *        `putDataExtras(int, String, String)`.
 *
 * Groups share these variables; of two with one key the later group's holds.
 *
 * @param run    the run's handle
 * @param key    neither null nor empty
 * @param value  its value, not null
 * @return #VANTIRO_OK; or one of the @ref peach_statuses
 */
VANTIRO_API int vantiro_peach_putDataExtras(int run, const char *key, const char *value);

/**
 * @brief Has the archive of the present group written anew in each run: the Java method
 *        `setDataSkipDigest(int, boolean)`.
 *
 * @param run   the run's handle
 * @param flag  1 for yes; 0, the default: written only when a file changed
 * @return #VANTIRO_OK; or one of the @ref peach_statuses
 */
VANTIRO_API int vantiro_peach_setDataSkipDigest(int run, unsigned char flag);

/**@}*/
/** @} */

#ifdef __cplusplus
}
#endif

#endif
