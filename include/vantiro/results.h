/**
 * @file vantiro/results.h
 * @brief Waiting for projects, their status and times, and downloading and listing their results.
 *
 * What the values mean, and whether a call makes sense in a project's current state, is the Java
 * library's. For the local grid, "Arguments" in `java/README.md` names them one by one
 * (@ref arguments). The functions that ask a question return 1 or 0; a negative answer is a status,
 * not a yes.
 */
#ifndef VANTIRO_RESULTS_H
#define VANTIRO_RESULTS_H

#include "vantiro/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/**
 * @brief Waits: the Java method `actionWait(long)`.
 *
 * @param value  sign-extended to the Java `long`; its meaning and unit are the Java library's
 * @return 1 or 0; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_actionWait(int value);

/**
 * @brief Waits for the completion of a project: the Java method `waitCompletion(int)`.
 *
 * The calling thread is blocked for as long as the Java method runs.
 *
 * @param handle  the project's handle, as the Java library gave it out
 * @return the Java result, unchanged; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_waitCompletion(int handle);

/**
 * @brief Waits for the completion of a project in the background: the Java method
 *        `waitCompletionBG(int)`.
 *
 * @param handle  the project's handle, as the Java library gave it out
 * @return the Java result, unchanged; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_waitCompletionBG(int handle);

/**
 * @brief Stops waiting in the background: the Java method `stopWaitingBG(int)`.
 *
 * @param handle  the project's handle, as the Java library gave it out
 * @return the Java result, unchanged; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_stopWaitingBG(int handle);

/**
 * @brief Tells whether a project has completed: the Java method `isCompleted(int)`.
 *
 * @param handle  the project's handle, as the Java library gave it out
 * @return 1 or 0; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_isCompleted(int handle);

/**
 * @brief Tells whether a project has failed: the Java method `isFailed(int)`.
 *
 * @param handle  the project's handle, as the Java library gave it out
 * @return 1 or 0; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_isFailed(int handle);

/**
 * @brief Tells whether a job has completed: the Java method `isJobCompleted(int, long)`.
 *
 * @param handle  the project's handle, as the Java library gave it out
 * @param job     the number of the job, sign-extended to the Java `long`
 * @return 1 or 0; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_isJobCompleted(int handle, int job);

/**
 * @brief Gives the status of a project: the Java method `getProjectStatus(int)`.
 *
 * @param handle  the project's handle, as the Java library gave it out
 * @return the Java result, unchanged; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_getProjectStatus(int handle);

/**
 * @brief Gives the time that a project has used: the Java method `getUsedTime(int)`.
 *
 * The unit is the Java library's. A time of 2147483648 or more comes back changed: 3000000000 as
 * -1294967296, 4294967301 as 5; a negative result may be such a time or a status.
 *
 * @param handle  the project's handle, as the Java library gave it out
 * @return the low 32 bits of the Java `long`, as a signed `int`; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_getUsedTime(int handle);

/**
 * @brief Gives the processor time that a project has used: the Java method `getUsedCpuTime(int)`.
 *
 * Unit and range are those of vantiro_getUsedTime().
 *
 * @param handle  the project's handle, as the Java library gave it out
 * @return the low 32 bits of the Java `long`, as a signed `int`; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_getUsedCpuTime(int handle);

/**
 * @brief Gives one statistic of a project: the Java method `getProjectStatistic(int, String)`.
 *
 * @param handle  the project's handle, as the Java library gave it out
 * @param name    the name of the statistic (see @ref strings_in)
 * @param buffer  receives the text (see @ref string_buffers)
 * @param size    in: the capacity of `buffer`; out: the length plus 1
 * @return #VANTIRO_OK; #VANTIRO_ERROR_BUFFER_TOO_SMALL; or one of the @ref call_statuses
 * @note Nothing on null.
 */
VANTIRO_API int vantiro_getProjectStatistic(int handle, const char *name, char *buffer,
                                            unsigned int *size);

/**
 * @brief Sets the directory that results are downloaded into: the Java method
 *        `setDownloadDir(int, String)`.
 *
 * @param handle     the project's handle, as the Java library gave it out
 * @param directory  the directory (see @ref strings_in)
 * @return the Java result, unchanged; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_setDownloadDir(int handle, const char *directory);

/**
 * @brief Sets the directory that results are unpacked into: the Java method
 *        `setUnzipDir(int, String)`.
 *
 * @param handle     the project's handle, as the Java library gave it out
 * @param directory  the directory (see @ref strings_in)
 * @return the Java result, unchanged; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_setUnzipDir(int handle, const char *directory);

/**
 * @brief Downloads the result of a project: the Java method `downloadResult(int)`.
 *
 * @param handle  the project's handle, as the Java library gave it out
 * @return the Java result, unchanged; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_downloadResult(int handle);

/**
 * @brief Downloads the partial result of a project: the Java method `downloadResult(int, boolean)`,
 *        with `true`.
 *
 * @param handle  the project's handle, as the Java library gave it out
 * @return the Java result, unchanged; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_downloadPartialResult(int handle);

/**
 * @brief Unpacks the results of a project: the Java method `unzip(int)`.
 *
 * @param handle  the project's handle, as the Java library gave it out
 * @return the Java result, unchanged; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_unzip(int handle);

/**
 * @brief Unpacks a file: the Java method `unzipFile(String, String, String)`.
 *
 * @param first,second,third  passed unchanged, in this order; their meaning is the Java library's
 *                            (see @ref strings_in)
 * @return the Java result, unchanged; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_unzipFile(const char *first, const char *second, const char *third);

/**
 * @brief Switches streamed results on or off: the Java method `setStreamResults(int, boolean)`.
 *
 * @param handle  the project's handle, as the Java library gave it out
 * @param stream  1 for on, 0 for off
 * @return the Java result, unchanged; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_setStreamResults(int handle, unsigned char stream);

/**
 * @brief Gives the number of streamed result files: the Java method
 *        `getStreamedResultFilesCount(int)`.
 *
 * @param handle  the project's handle, as the Java library gave it out
 * @return the Java result, unchanged; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_getStreamedResultFilesCount(int handle);

/**
 * @brief Gives the name of one streamed result file: the Java methods
 *        `getStreamedResultFilesCount(int)` and `getStreamedResultFileName(int, int)`.
 *
 * The list is counted afresh in each call, so it may grow between two calls.
 *
 * @param handle  the project's handle, as the Java library gave it out
 * @param index   in: the position, from 0; out: the list's length (see @ref indexed_strings)
 * @param buffer  receives the name (see @ref string_buffers)
 * @param size    in: the capacity of `buffer`; out: the length plus 1
 * @return #VANTIRO_OK; #VANTIRO_ERROR_BUFFER_TOO_SMALL; #VANTIRO_ERROR_INDEX_OUT_OF_BOUNDS; or one
 *         of the @ref call_statuses
 */
VANTIRO_API int vantiro_getStreamedResultFiles(int handle, int *index, char *buffer,
                                               unsigned int *size);

/**
 * @brief Gives the name of one result file: the Java methods `getResultFileCount(int)` and
 *        `getResultFileName(int, int)`.
 *
 * The list is counted afresh in each call, so it may grow between two calls.
 *
 * @param handle  the project's handle, as the Java library gave it out
 * @param index   in: the position, from 0; out: the list's length (see @ref indexed_strings)
 * @param buffer  receives the name (see @ref string_buffers)
 * @param size    in: the capacity of `buffer`; out: the length plus 1
 * @return #VANTIRO_OK; #VANTIRO_ERROR_BUFFER_TOO_SMALL; #VANTIRO_ERROR_INDEX_OUT_OF_BOUNDS; or one
 *         of the @ref call_statuses
 */
VANTIRO_API int vantiro_getResultFiles(int handle, int *index, char *buffer, unsigned int *size);

/**
 * @brief Gives the name of the result file: the Java method `getResultFile(int)`.
 *
 * @param handle  the project's handle, as the Java library gave it out
 * @param buffer  receives the name (see @ref string_buffers)
 * @param size    in: the capacity of `buffer`; out: the length plus 1
 * @return #VANTIRO_OK; #VANTIRO_ERROR_BUFFER_TOO_SMALL; or one of the @ref call_statuses
 * @note Nothing on null.
 */
VANTIRO_API int vantiro_getResultFile(int handle, char *buffer, unsigned int *size);

/**
 * @brief Gives the path of the result directory: the Java method `getResultDirectory(int)`.
 *
 * @param handle  the project's handle, as the Java library gave it out
 * @param buffer  receives the path (see @ref string_buffers)
 * @param size    in: the capacity of `buffer`; out: the length plus 1
 * @return #VANTIRO_OK; #VANTIRO_ERROR_BUFFER_TOO_SMALL; or one of the @ref call_statuses
 * @note Nothing on null.
 */
VANTIRO_API int vantiro_getResultDirectory(int handle, char *buffer, unsigned int *size);

#ifdef __cplusplus
}
#endif

#endif
