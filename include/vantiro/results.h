/**
 * @file vantiro/results.h
 * @brief Waiting for projects, how far they are, and their results.
 */
#ifndef VANTIRO_RESULTS_H
#define VANTIRO_RESULTS_H

#include "vantiro/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/**
 * @defgroup waiting Waiting for jobs
 * @brief Until a project completes, with a look at how far it is.
 *
 * A project completes when it is started, all its jobs are marked as created
 * (vantiro_markAllJobsCreated()) and have ended, well or not; or when it was stopped. The functions
 * that ask a question return 1 or 0; a negative answer is a status, not a yes.
 *
 * @code
 * vantiro_startProject(project);
 * while (vantiro_isCompleted(project) == 0) {
 *   char done[16] = "";
 *   unsigned int size = sizeof done;
 *   vantiro_getProjectStatistic(project, "completed", done, &size);
 *   printf("%s jobs done\n", done);
 *   vantiro_actionWait(1000);  // until something changes, a second at most
 * }
 * int status = vantiro_waitCompletion(project);  // returns at once, and tells how it went
 * @endcode
 * @{
 */

/**
 * @brief Waits until any job or project changes its state: the Java method `actionWait(long)`.
 *
 * Only what changes after the call has begun counts, of the projects and runs that were created
 * since the last initialiser: look at what is waited for after each call.
 *
 * @param milliseconds  how long at most, sign-extended to the Java `long`; 0 or less does not wait
 * @return 1 when something changed, 0 when the time was over; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_actionWait(int milliseconds);

/**
 * @brief Waits for the completion of a project: the Java method `waitCompletion(int)`.
 *
 * The calling thread is blocked until then, without a limit; other threads may call meanwhile, and
 * one that stops the project ends the waiting.
 *
 * @param project  the project's handle
 * @return 0 when all jobs have succeeded; -5 when at least one failed, and
 *         vantiro_getLastErrorMessage() names up to ten of them with their command, exit status and
 *         the end of their standard error; -9 when the project was stopped; -4 when it is not
 *         started, or its jobs are not marked as created; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_waitCompletion(int project);

/**
 * @brief Has a thread of the grid download each result as its job ends: the Java method
 *        `waitCompletionBG(int)`.
 *
 * It returns at once. Without a directory to download to, nothing is downloaded until
 * vantiro_setDownloadDir() names one. A download that fails is told by
 * vantiro_getLastErrorMessage() alone, and ends that thread: vantiro_downloadResult() at the end
 * finds it out.
 *
 * @param project  the project's handle
 * @return 0; -4 when it is waited for in that way already; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_waitCompletionBG(int project);

/**
 * @brief Ends the thread that vantiro_waitCompletionBG() started: the Java method
 *        `stopWaitingBG(int)`.
 *
 * The jobs go on.
 *
 * @param project  the project's handle
 * @return 0; -4 when there is no such thread, since none was started or it has ended by itself; or
 *         one of the @ref call_statuses
 */
VANTIRO_API int vantiro_stopWaitingBG(int project);

/**
 * @brief Tells whether a project has completed: the Java method `isCompleted(int)`.
 *
 * @param project  the project's handle
 * @return 1 when all its jobs have ended and no more can follow, also when some failed or it was
 *         stopped; else 0; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_isCompleted(int project);

/**
 * @brief Tells whether a job of a project has failed: the Java method `isFailed(int)`.
 *
 * It can be asked while others run, to stop them early.
 *
 * @param project  the project's handle
 * @return 1 or 0; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_isFailed(int project);

/**
 * @brief Tells whether a job has ended, well or not: the Java method `isJobCompleted(int, long)`.
 *
 * @param project  the project's handle
 * @param job      the number of the job, from 1, sign-extended to the Java `long`
 * @return 1 or 0; or one of the @ref call_statuses, #VANTIRO_ERROR_UNCAUGHT_EXCEPTION for a job
 *         that does not exist
 */
VANTIRO_API int vantiro_isJobCompleted(int project, int job);

/**
 * @brief Gives the state of a project: the Java method `getProjectStatus(int)`.
 *
 * @param project  the project's handle
 * @return 0 created, 1 running, 2 completed and all jobs succeeded, 3 completed and at least one
 *         failed, 4 stopped; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_getProjectStatus(int project);

/**
 * @brief Gives the time from the start of a project to its completion, or until now: the Java
 * method `getUsedTime(int)`.
 *
 * A time of 2147483648 ms or more, nearly 25 days, comes back changed: 3000000000 as -1294967296,
 * 4294967301 as 5; a negative result may be such a time or a status. vantiro_getProjectStatistic()
 * has it whole.
 *
 * @param project  the project's handle
 * @return the low 32 bits of the milliseconds, as a signed `int`, 0 before the start; or one of the
 *         @ref call_statuses
 */
VANTIRO_API int vantiro_getUsedTime(int project);

/**
 * @brief Gives the processor time of a project's ended jobs: the Java method `getUsedCpuTime(int)`.
 *
 * Range as for vantiro_getUsedTime().
 *
 * @param project  the project's handle
 * @return the low 32 bits of the milliseconds, as a signed `int`; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_getUsedCpuTime(int project);

/**
 * @brief Gives a figure of a project as text: the Java method `getProjectStatistic(int, String)`.
 *
 * @param project  the project's handle
 * @param name     `jobs`, `waiting`, `running`, `completed` (well) or `failed`, which are numbers
 *                 of jobs; `usedTime` or `usedCpuTime`, in milliseconds
 * @param buffer   receives the number (see @ref string_buffers)
 * @param size     in: the capacity of `buffer`; out: the length plus 1
 * @return #VANTIRO_OK; #VANTIRO_ERROR_BUFFER_TOO_SMALL; or one of the @ref call_statuses
 * @note Nothing on null, which means that there is no figure of that name.
 */
VANTIRO_API int vantiro_getProjectStatistic(int project, const char *name, char *buffer,
                                            unsigned int *size);

/** @} */

/**
 * @defgroup results Results and archives
 * @brief The files that jobs left: one archive for each ended job, downloaded and unpacked.
 *
 * The archive of job 7 is `job-7.zip`. It has all files that the job created or changed, with their
 * permissions, `stdout` and `stderr` among them, also when the job failed.
 *
 * @code
 * vantiro_setDownloadDir(project, "archives");   // job-1.zip, job-2.zip, ...
 * vantiro_setUnzipDir(project, "out");           // job-1/, job-2/, ...
 * int status = vantiro_waitCompletion(project);  // -5: the results of all jobs are there, too
 * int archives = vantiro_downloadResult(project);
 * int files = vantiro_unzip(project);
 * @endcode
 * @{
 */

/**
 * @brief Sets the directory that archives are downloaded to: the Java method
 *        `setDownloadDir(int, String)`.
 *
 * Projects name their archives alike, so each needs a directory of its own: a download to that of
 * another project is refused, as long as that project and its program are there. Without it
 * archives go to `project-<number>/` below the setting `download.dir`.
 *
 * @param project    the project's handle
 * @param directory  the directory, made when it is missing; not null
 * @return 0; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_setDownloadDir(int project, const char *directory);

/**
 * @brief Sets the directory that archives are unpacked to: the Java method
 *        `setUnzipDir(int, String)`.
 *
 * Without it they are unpacked to `project-<number>/` below the setting `unzip.dir`, or else to the
 * download directory. One that has the results of another project is refused, as in
 * vantiro_setDownloadDir().
 *
 * @param project    the project's handle
 * @param directory  the directory, made when it is missing; not null
 * @return 0; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_setUnzipDir(int project, const char *directory);

/**
 * @brief Copies the archives of a completed project to the download directory: the Java method
 *        `downloadResult(int)`.
 *
 * An archive that is there already is replaced, and appears whole. A project that was stopped can
 * be downloaded, too.
 *
 * @param project  the project's handle
 * @return the number of archives; -4 when the project has not completed, when no directory is set,
 *         or when it has the results of another project; -8 when a cleanup removed the results; -1
 * when they cannot be written; or one of the
 *         @ref call_statuses
 */
VANTIRO_API int vantiro_downloadResult(int project);

/**
 * @brief Copies the archives of the jobs that have ended so far: the Java method
 *        `downloadResult(int, boolean)`, with `true`.
 *
 * @param project  the project's handle
 * @return as vantiro_downloadResult(), which wants a completed project
 */
VANTIRO_API int vantiro_downloadPartialResult(int project);

/**
 * @brief Unpacks the archives that were downloaded, each to a directory of its own: the Java method
 *        `unzip(int)`.
 *
 * That of job 7 goes to `job-7/` below the directory of vantiro_setUnzipDir(). Files of the same
 * names there are replaced.
 *
 * @param project  the project's handle
 * @return the number of files; -4 when nothing was downloaded yet, or when the directory has the
 *         results of another project; -7 for a damaged archive; -1
 *         when files cannot be written; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_unzip(int project);

/**
 * @brief Unpacks an archive, or one file of it: the Java method
 *        `unzipFile(String, String, String)`.
 *
 * It takes any zip or jar archive and needs no project. An archive with a file that would land
 * outside of the directory is refused as a whole.
 *
 * @param archive    the path of the archive
 * @param directory  the directory to unpack to, made when it is missing
 * @param entry      the name of the file within the archive; empty or null: all files
 * @return the number of files; -8 when there is no such archive or file in it; -7 when it is
 *         damaged or unsafe; -1 when files cannot be written; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_unzipFile(const char *archive, const char *directory, const char *entry);

/**
 * @brief Gives the path of one archive with the results of all ended jobs: the Java method
 *        `getResultFile(int)`.
 *
 * It is made in the grid's home by each call, with `job-1/`, `job-2/` and so on in it, and goes
 * with the project. No download is needed.
 *
 * @param project  the project's handle
 * @param buffer   receives the path (see @ref string_buffers); give it 4096 bytes
 * @param size     in: the capacity of `buffer`; out: the length plus 1
 * @return #VANTIRO_OK; #VANTIRO_ERROR_BUFFER_TOO_SMALL; or one of the @ref call_statuses
 * @note Nothing on null.
 */
VANTIRO_API int vantiro_getResultFile(int project, char *buffer, unsigned int *size);

/**
 * @brief Gives the path of the directory where the archives are: the Java method
 *        `getResultDirectory(int)`.
 *
 * @param project  the project's handle
 * @param buffer   receives the path of the download directory, or of the grid's own while there is
 *                 none (see @ref string_buffers)
 * @param size     in: the capacity of `buffer`; out: the length plus 1
 * @return #VANTIRO_OK; #VANTIRO_ERROR_BUFFER_TOO_SMALL; or one of the @ref call_statuses
 * @note Nothing on null.
 */
VANTIRO_API int vantiro_getResultDirectory(int project, char *buffer, unsigned int *size);

/**
 * @brief Gives the name of one archive: the Java methods `getResultFileCount(int)` and
 *        `getResultFileName(int, int)`.
 *
 * The archives are those of the jobs that have ended, in the order of the jobs. The list is counted
 * afresh in each call, so it may grow between two calls.
 *
 * @param project  the project's handle
 * @param index    in: the position, from 0; out: the list's length (see @ref indexed_strings)
 * @param buffer   receives the name, such as `job-7.zip`, in the directory of
 *                 vantiro_getResultDirectory() once it is downloaded (see @ref string_buffers)
 * @param size     in: the capacity of `buffer`; out: the length plus 1
 * @return #VANTIRO_OK; #VANTIRO_ERROR_BUFFER_TOO_SMALL; #VANTIRO_ERROR_INDEX_OUT_OF_BOUNDS; or one
 *         of the @ref call_statuses
 */
VANTIRO_API int vantiro_getResultFiles(int project, int *index, char *buffer, unsigned int *size);

/**
 * @brief Has each archive downloaded as soon as its job ends: the Java method
 *        `setStreamResults(int, boolean)`.
 *
 * When it is switched on, the archives of jobs that have ended already are downloaded at once.
 * Without a download directory they stay in the grid's own. vantiro_getStreamedResultFiles() lists
 * them in the order in which the jobs ended.
 *
 * @param project  the project's handle
 * @param stream   1 for on; 0, the default, for off
 * @return 0; -1 when an archive cannot be written; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_setStreamResults(int project, unsigned char stream);

/**
 * @brief Gives the number of archives that were streamed: the Java method
 *        `getStreamedResultFilesCount(int)`.
 *
 * @param project  the project's handle
 * @return the number, which grows as jobs end; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_getStreamedResultFilesCount(int project);

/**
 * @brief Gives the name of one archive that was streamed: the Java methods
 *        `getStreamedResultFilesCount(int)` and `getStreamedResultFileName(int, int)`.
 *
 * The list is counted afresh in each call, so it may grow between two calls; positions stay.
 *
 * @param project  the project's handle
 * @param index    in: the position, from 0; out: the list's length (see @ref indexed_strings)
 * @param buffer   receives the name, in the directory of vantiro_getResultDirectory()
 *                 (see @ref string_buffers)
 * @param size     in: the capacity of `buffer`; out: the length plus 1
 * @return #VANTIRO_OK; #VANTIRO_ERROR_BUFFER_TOO_SMALL; #VANTIRO_ERROR_INDEX_OUT_OF_BOUNDS; or one
 *         of the @ref call_statuses
 */
VANTIRO_API int vantiro_getStreamedResultFiles(int project, int *index, char *buffer,
                                               unsigned int *size);

/** @} */

#ifdef __cplusplus
}
#endif

#endif
