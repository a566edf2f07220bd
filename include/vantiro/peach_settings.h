/**
 * @file vantiro/peach_settings.h
 * @brief Describing a parallel-each run before it is executed: what it is, what it runs, and what
 *        becomes of its results.
 */
#ifndef VANTIRO_PEACH_SETTINGS_H
#define VANTIRO_PEACH_SETTINGS_H

#include "vantiro/peach_inputs.h"
#include "vantiro/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/**
 * @defgroup each_settings Settings of a run
 * @ingroup each
 * @brief Its name, number of jobs, priority and directory, and what happens to its files.
 *
 * All are called between vantiro_peach_handle() and vantiro_peach_execute(); later they give
 * #VANTIRO_ERROR_UNCAUGHT_EXCEPTION. A setting that is made twice has the later value.
 *
 * @code
 * vantiro_peach_setName(run, "wind tunnel");
 * vantiro_peach_setJobs(run, 100);               // VANTIRO_JOB tells each which one it is
 * vantiro_peach_setPriority(run, "low");
 * vantiro_peach_setStateDir(run, "tunnel-out");  // outputs go to tunnel-out/job-1/, ...
 * vantiro_peach_setAllowPartial(run, 1);         // take what succeeded
 * vantiro_peach_putProjectParam(run, "speed", "12.5");  // VANTIRO_PARAM_speed
 * @endcode
 * @{
 */

/**
 * @brief Sets the name: the Java method `setName(int, String)`.
 *
 * It stands in messages and statistics.
 *
 * @param run   the run's handle
 * @param name  any text, not null; `peach` when it is not set
 * @return #VANTIRO_OK; or one of the @ref peach_statuses
 */
VANTIRO_API int vantiro_peach_setName(int run, const char *name);

/**
 * @brief Sets the directory that keeps the outputs, and what is remembered from run to run: the
 *        Java method `setStateDir(int, String)`.
 *
 * Outputs go to `job-1/`, `job-2/` and so on in it, archives of the inputs to `inputs/`. When the
 * next run in the same directory executes, the outputs of the last one are removed; nothing else
 * there is removed or replaced: a file of the caller's in the place of an output makes the run fail
 * (-4). One run has the directory at a time; another one, of any program, fails (-4).
 *
 * @param run  the run's handle
 * @param dir  the directory, made when it is missing; not null. When it is not set, a directory in
 *             the grid's home that goes with the run's project
 * @return #VANTIRO_OK; or one of the @ref peach_statuses
 */
VANTIRO_API int vantiro_peach_setStateDir(int run, const char *dir);

/**
 * @brief Sets a text for vantiro_getProjectDescription(): the Java method
 *        `setDescription(int, String)`.
 *
 * @param run          the run's handle
 * @param description  the text; empty when it is not set
 * @return #VANTIRO_OK; or one of the @ref peach_statuses
 */
VANTIRO_API int vantiro_peach_setDescription(int run, const char *description);

/**
 * @brief Has progress told on standard error, a line for each job that ends: the Java method
 *        `setMessages(int, boolean)`.
 *
 * @param run   the run's handle
 * @param flag  1 for yes; 0, the default, for silence
 * @return #VANTIRO_OK; or one of the @ref peach_statuses
 */
VANTIRO_API int vantiro_peach_setMessages(int run, unsigned char flag);

/**
 * @brief Sets the priority as a number: the Java method `setPriority(int, int)`.
 *
 * Waiting jobs of a higher priority go first, among all runs and projects of the program that were
 * created since its last initialiser. Jobs that run are not interrupted.
 *
 * @param run       the run's handle
 * @param priority  any number; 0 when it is not set
 * @return #VANTIRO_OK; or one of the @ref peach_statuses
 */
VANTIRO_API int vantiro_peach_setPriorityI(int run, int priority);

/**
 * @brief Sets the priority as a text: the Java method `setPriority(int, String)`.
 *
 * @param run       the run's handle
 * @param priority  `low` (-10), `normal` (0), `high` (10), or a number as text; others are refused
 *                  with #VANTIRO_ERROR_UNCAUGHT_EXCEPTION
 * @return #VANTIRO_OK; or one of the @ref peach_statuses
 */
VANTIRO_API int vantiro_peach_setPriority(int run, const char *priority);

/**
 * @brief Sets the number of the run's project: the Java method `setProjectId(int, int)`.
 *
 * See vantiro_setProjectId(). Without it the project has the next number that is free.
 *
 * @param run  the run's handle
 * @param id   the number, 0 or more
 * @return #VANTIRO_OK; or one of the @ref peach_statuses. #VANTIRO_ERROR_UNCAUGHT_EXCEPTION also
 *         when a project of a program that lives has that number.
 */
VANTIRO_API int vantiro_peach_setProjectId(int run, int id);

/**
 * @brief Has the outputs of all jobs put into one archive: the Java method
 *        `setResultFile(int, String)`.
 *
 * vantiro_peach_execute() writes it when the run has succeeded, with `job-1/`, `job-2/` and so on
 * in it, each with `stdout` and `stderr`; where vantiro_peach_setAllowPartial() lets a run succeed,
 * those of failed jobs are among them. A file of that name is replaced.
 *
 * @param run   the run's handle
 * @param file  the path of the archive, a zip file; not null. There is none when it is not set
 * @return #VANTIRO_OK; or one of the @ref peach_statuses
 */
VANTIRO_API int vantiro_peach_setResultFile(int run, const char *file);

/**
 * @brief Sets the number of jobs: the Java method `setJobs(int, int)`.
 *
 * @param run   the run's handle
 * @param jobs  1 or more, and no less than the calls of vantiro_peach_addJobFile(), whose number it
 *              is when it is not set, or 1
 * @return #VANTIRO_OK; or one of the @ref peach_statuses
 */
VANTIRO_API int vantiro_peach_setJobs(int run, int jobs);

/**
 * @brief Lets the run succeed although jobs fail: the Java method `setAllowPartial(int, boolean)`.
 *
 * vantiro_peach_execute() then gives 0 also when jobs failed or were stopped, and
 * vantiro_peach_nextFile() the files of those that succeeded, whose paths tell which these are.
 * vantiro_peach_getLastErrorMessage() tells which failed; the statistic `failed` of the run's
 * project, how many.
 *
 * @param run   the run's handle
 * @param flag  1 for yes; 0, the default: one failed job makes the run fail
 * @return #VANTIRO_OK; or one of the @ref peach_statuses
 */
VANTIRO_API int vantiro_peach_setAllowPartial(int run, unsigned char flag);

/**
 * @brief Has vantiro_peach_done() remove the run's project with its files in the grid's home: the
 *        Java method `setRemove(int, boolean)`.
 *
 * A state directory that vantiro_peach_setStateDir() names stays.
 *
 * @param run   the run's handle
 * @param flag  1 for yes; 0, the default: they stay until vantiro_removeProject() or
 *              vantiro_cleanup() removes them
 * @return #VANTIRO_OK; or one of the @ref peach_statuses
 */
VANTIRO_API int vantiro_peach_setRemove(int run, unsigned char flag);

/**
 * @brief Says whether working directories and processed files go: the Java method
 *        `setCleanup(int, boolean)`.
 *
 * @param run   the run's handle
 * @param flag  1 removes each job's working directory when it has ended, and in
 *              vantiro_peach_done() the files that vantiro_peach_postProcessed() was told of; 0
 *              keeps both. When it is not set, the setting `keep.work` decides on the working
 *              directories, and files stay
 * @return #VANTIRO_OK; or one of the @ref peach_statuses
 */
VANTIRO_API int vantiro_peach_setCleanup(int run, unsigned char flag);

/**
 * @brief Has the run end by itself: the Java method `setClose(int, boolean)`.
 *
 * When vantiro_peach_nextFile() answers after the execution that there are no more files, the run
 * has ended as by vantiro_peach_done(), and its handle is not known any more.
 *
 * @param run   the run's handle
 * @param flag  1 for yes; 0 is the default
 * @return #VANTIRO_OK; or one of the @ref peach_statuses
 */
VANTIRO_API int vantiro_peach_setClose(int run, unsigned char flag);

/**
 * @brief Has files handed out while other jobs run: the Java method `setStream(int, boolean)`.
 *
 * Another thread than the one in vantiro_peach_execute() then asks vantiro_peach_nextFile().
 * vantiro_actionWait() spares it from asking in a circle.
 *
 * @param run   the run's handle
 * @param flag  1 for yes; 0, the default: there are no files before the run has ended
 * @return #VANTIRO_OK; or one of the @ref peach_statuses
 */
VANTIRO_API int vantiro_peach_setStream(int run, unsigned char flag);

/**
 * @brief Sets a value that all jobs find in their environment: the Java method
 *        `putProjectParam(int, String, String)`.
 *
 * The variable is `VANTIRO_PARAM_<key>`, with `_` for each character of the key that is no letter,
 * digit or `_`.
 *
 * @param run    the run's handle
 * @param key    the parameter's name, neither null nor empty
 * @param value  its value, not null
 * @return #VANTIRO_OK; or one of the @ref peach_statuses
 */
VANTIRO_API int vantiro_peach_putProjectParam(int run, const char *key, const char *value);

/** @} */

/**
 * @defgroup each_program What a run executes and keeps
 * @ingroup each
 * @brief The command of the jobs, the files of the program, and the outputs.
 *
 * @code
 * vantiro_peach_addExeFile(run, "build/solver", "", "", "");    // becomes ./solver
 * vantiro_peach_addExeFile(run, "data/table-v7", "table", "", "644");
 * vantiro_peach_setExecutable(run, "./solver --table table < input > result");
 * vantiro_peach_addOutputFile(run, "result");                   // has to be there
 * vantiro_peach_addOutputFile(run, "*.png");                      // a pattern: may fit none
 * @endcode
 * @{
 */

/**
 * @brief Sets the command line that every job runs: the Java method `setExecutable(int, String)`.
 *
 * `/bin/sh` runs it, in the job's own working directory. A program at its beginning that lies in
 * that directory (`./solver`) is made executable. What tells the jobs apart are their files, and
 * the variables `VANTIRO_JOB`, the job's number from 1, and `VANTIRO_JOBS`, how many there are.
 *
 * @param run   the run's handle
 * @param line  the command line, not null
 * @return #VANTIRO_OK; or one of the @ref peach_statuses
 */
VANTIRO_API int vantiro_peach_setExecutable(int run, const char *line);

/**
 * @brief Adds a file of the program, which every job finds in its working directory: the Java
 *        method `addExeFile(int, String, String, String, String)`.
 *
 * @param run       the run's handle
 * @param file      the file on this machine; vantiro_peach_execute() gives -8 when it is missing
 * @param name      its name for the jobs, which may lead through directories; empty: the file's own
 * @param platform  what it is for: `linux`, `linux-i386`, `linux-amd64`, ...; a file for another
 *                  platform than this machine's Java is left out, and of several under one name the
 * most special one is taken. Empty or `any`: for all
 * @param mode      its permissions in octal, such as `755`; empty: those of the file
 * @return #VANTIRO_OK; or one of the @ref peach_statuses. #VANTIRO_ERROR_UNCAUGHT_EXCEPTION also
 *         for a platform that does not exist, whose message lists those that do.
 */
VANTIRO_API int vantiro_peach_addExeFile(int run, const char *file, const char *name,
                                         const char *platform, const char *mode);

/**
 * @brief Names the bundle to run, or the archive of the program's files: the Java method
 *        `setExeBundleName(int, String)`.
 *
 * Without a file of vantiro_peach_addExeFile() it is an approved bundle (see @ref bundles), which
 * every job finds unpacked, and whose executable runs when vantiro_peach_setExecutable() sets no
 * other command. With such files it is only a part of the name of their archive in the state
 * directory, `inputs/exe-<name>.jar`.
 *
 * @param run   the run's handle
 * @param name  the bundle's name, with its prefix or without; empty: none
 * @return #VANTIRO_OK; or one of the @ref peach_statuses
 */
VANTIRO_API int vantiro_peach_setExeBundleName(int run, const char *name);

/**
 * @brief Adds an approved bundle whose files every job finds: the Java method
 *        `addExeImport(int, String)`.
 *
 * @param run   the run's handle
 * @param name  the bundle's name, not null; vantiro_peach_execute() gives -6 when there is none
 * @return #VANTIRO_OK; or one of the @ref peach_statuses
 */
VANTIRO_API int vantiro_peach_addExeImport(int run, const char *name);

/**
 * @brief Has the archive of the program's files written anew in each run, without looking whether
 *        they changed: the Java method `setExeSkipDigest(int, boolean)`.
 *
 * That is faster where every run has files, or a state directory, of its own.
 *
 * @param run   the run's handle
 * @param flag  1 for yes; 0, the default: written only when a file changed
 * @return #VANTIRO_OK; or one of the @ref peach_statuses
 */
VANTIRO_API int vantiro_peach_setExeSkipDigest(int run, unsigned char flag);

/**
 * @brief Sets a variable of the jobs, `VANTIRO_EXTRA_EXE_<key>`: the Java method
 *        `putExeExtras(int, String, String)`.
 *
 * @param run    the run's handle
 * @param key    neither null nor empty; characters as in vantiro_peach_putProjectParam()
 * @param value  its value, not null
 * @return #VANTIRO_OK; or one of the @ref peach_statuses
 */
VANTIRO_API int vantiro_peach_putExeExtras(int run, const char *key, const char *value);

/**
 * @brief Adds a file that the program is made from: the Java method `addSourceFile(int, String)`.
 *
 * Jobs do not get it. Its contents are what vantiro_peach_sourcesChanged() compares.
 *
 * @param run   the run's handle
 * @param file  the file on this machine
 * @return #VANTIRO_OK; or one of the @ref peach_statuses
 */
VANTIRO_API int vantiro_peach_addSourceFile(int run, const char *file);

/**
 * @brief Adds a value that the program is made with, such as a compiler's option: the Java method
 *        `putSourceExtras(int, String, String)`.
 *
 * vantiro_peach_sourcesChanged() compares it, and jobs find it as `VANTIRO_EXTRA_SOURCE_<key>`.
 *
 * @param run    the run's handle
 * @param key    neither null nor empty; characters as in vantiro_peach_putProjectParam()
 * @param value  its value, not null
 * @return #VANTIRO_OK; or one of the @ref peach_statuses
 */
VANTIRO_API int vantiro_peach_putSourceExtras(int run, const char *key, const char *value);

/**
 * @brief Adds an output to keep: the Java method `addOutputFile(int, String)`.
 *
 * A job that ends without a file of that name has failed; a pattern may fit none. Without any call
 * every file that a job wrote is kept. `stdout` and `stderr` are kept always, and handed out by
 * vantiro_peach_nextFile() when they are listed by these names or nothing is.
 *
 * @param run   the run's handle
 * @param file  the name of a file below the working directory, or a pattern: `*` and `?` within a
 *              name, `**` across directories, `{a,b}`, `[a-z]`
 * @return #VANTIRO_OK; or one of the @ref peach_statuses
 */
VANTIRO_API int vantiro_peach_addOutputFile(int run, const char *file);

/** @} */

#ifdef __cplusplus
}
#endif

#endif
