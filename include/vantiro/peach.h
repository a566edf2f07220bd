/**
 * @file vantiro/peach.h
 * @brief Parallel-each runs: with a handle, with intermediate results, and with a single call.
 *
 * A run with a handle takes these steps, in an order that the Java library judges:
 *
 * 1. vantiro_peach_handle() gives the run's peach handle;
 * 2. the functions of vantiro/peach_settings.h describe the run, and
 *    vantiro_peach_setIntermediateResultHandler() asks for its intermediate results;
 * 3. vantiro_peach_execute() executes it;
 * 4. vantiro_peach_nextFile(), again and again, gives its result files;
 * 5. vantiro_peach_done() ends it.
 *
 * A run with a single call is vantiro_peach(), then vantiro_peachNextFile() again and again, then
 * vantiro_peachDone().
 *
 * @section peach_statuses Statuses of the parallel-each object
 *
 * The functions that take a peach handle call the parallel-each object, with the handle as the
 * first Java argument. They return the @ref call_statuses, but #VANTIRO_ERROR_NOT_INITIALIZED means
 * that there is no such object: vantiro_peach_handle() has not succeeded yet, or not since
 * vantiro_unload() or vantiro_unload2(). It is also returned when the calling thread could not be
 * attached. The caller sees to it that no other thread is in such a call during an unload.
 */
#ifndef VANTIRO_PEACH_H
#define VANTIRO_PEACH_H

#include "vantiro/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/**
 * @name Runs with a handle
 */
/**@{*/

/**
 * @brief Gives a peach handle: the Java method `get()` of the parallel-each object.
 *
 * The first call, and the first one after vantiro_unload() or vantiro_unload2(), obtains the
 * parallel-each object from the management object with the Java method `getPeachWrapper()`. When
 * that fails there is still no object, and the next call tries again. When two threads make the
 * first call at once, both obtain an object and the later one stays.
 *
 * Which values are handles, and whether each call starts a new run, is the Java library's.
 *
 * @return the peach handle, which is the Java result, unchanged; or one of the @ref call_statuses.
 *         #VANTIRO_ERROR_UNCAUGHT_EXCEPTION also when the Java library has no class
 *         `fi/vantiro/user/PeachWrapper` or `getPeachWrapper()` returned null.
 */
VANTIRO_API int vantiro_peach_handle(void);

/**
 * @brief Executes the run: the Java method `execute(int)`.
 *
 * @param handle  the peach handle
 * @return the Java result, unchanged; or one of the @ref peach_statuses
 */
VANTIRO_API int vantiro_peach_execute(int handle);

/**
 * @brief Calls the Java method `postProcessed(int, int)`.
 *
 * @param handle  the peach handle
 * @param value   passed unchanged; its meaning is the Java library's
 * @return #VANTIRO_OK; or one of the @ref peach_statuses
 */
VANTIRO_API int vantiro_peach_postProcessed(int handle, int value);

/**
 * @brief Ends the run: the Java method `done(int)`.
 *
 * @param handle  the peach handle
 * @return #VANTIRO_OK; or one of the @ref peach_statuses
 */
VANTIRO_API int vantiro_peach_done(int handle);

/**
 * @brief Gives the handle of the run's project: the Java method `getProjectHandle(int)`.
 *
 * It is of the kind that the functions of vantiro/projects.h and vantiro/results.h take.
 *
 * @param handle  the peach handle
 * @return the Java result, unchanged; or one of the @ref peach_statuses
 */
VANTIRO_API int vantiro_peach_getProjectHandle(int handle);

/**
 * @brief Gives the id of the run's project: the Java method `getProjectId(int)`.
 *
 * @param handle  the peach handle
 * @return the Java result, unchanged; or one of the @ref peach_statuses
 */
VANTIRO_API int vantiro_peach_getProjectId(int handle);

/**
 * @brief Tells whether the sources changed: the Java method `sourcesChanged(int)`.
 *
 * @param handle  the peach handle
 * @return 1 or 0; or one of the @ref peach_statuses, which are not a yes
 */
VANTIRO_API int vantiro_peach_sourcesChanged(int handle);

/**
 * @brief Gives the text of the run's last error: the Java method `getLastErrorMessage(int)`.
 *
 * @param handle  the peach handle
 * @param buffer  receives the text (see @ref string_buffers)
 * @param size    in: the capacity of `buffer`; out: the length plus 1
 * @return #VANTIRO_OK; #VANTIRO_ERROR_BUFFER_TOO_SMALL; or one of the @ref peach_statuses
 * @note Nothing on null.
 */
VANTIRO_API int vantiro_peach_getLastErrorMessage(int handle, char *buffer, unsigned int *size);

/**
 * @brief Gives the name of the run's next result file: the Java method `nextFile(int)`.
 *
 * @param handle  the peach handle
 * @param buffer  receives the name (see @ref string_buffers)
 * @param size    in: the capacity of `buffer`; out: the length plus 1
 * @return #VANTIRO_OK; #VANTIRO_ERROR_BUFFER_TOO_SMALL; or one of the @ref peach_statuses
 * @note Nothing on null: status 0 with `*size` 0 is no name.
 * @note The Java method is called anew each time, so whether a call after
 *       #VANTIRO_ERROR_BUFFER_TOO_SMALL gives the same name is the Java library's.
 */
VANTIRO_API int vantiro_peach_nextFile(int handle, char *buffer, unsigned int *size);

/**@}*/

/**
 * @name Intermediate results
 */
/**@{*/

/**
 * @brief Has the intermediate results of a run delivered to a function: the Java method
 *        `setIntermediateResultHandler(int, IntermediateResultHandler)`.
 *
 * Each run needs a registration of its own, but there is one callback for the process: all runs
 * deliver to that of the latest call that succeeded. A call that fails leaves the callback as it
 * was; vantiro_unload() and vantiro_unload2() do not reset it.
 *
 * The callback runs on a Java thread, which need not be the one that executes the run, and perhaps
 * on several at once. It must not let a C++ exception out. `text` is valid only during the call: a
 * callback that keeps it copies it. A delivery that overlaps a registration calls the old callback
 * or the new one, so the old one must stay callable.
 *
 * @param handle    the peach handle
 * @param callback  receives each result as a NUL-terminated string in modified UTF-8; null drops
 *                  them
 * @return #VANTIRO_OK; or one of the @ref peach_statuses. #VANTIRO_ERROR_METHOD_NOT_FOUND also when
 *         `fi/vantiro/user/NativeFunctionCaller` has no constructor without parameters;
 *         #VANTIRO_ERROR_UNCAUGHT_EXCEPTION also when that class is missing, or it could not be
 *         created or bound to this library.
 */
VANTIRO_API int vantiro_peach_setIntermediateResultHandler(int handle,
                                                           void (*callback)(const char *text));

/**
 * @brief Delivers one intermediate result: the native method `func(String)` of the Java class
 *        `fi/vantiro/user/NativeFunctionCaller`.
 *
 * The Java machine calls it; programs do not.
 *
 * @param jni   the calling thread's JNI environment
 * @param self  the Java handler; not used
 * @param text  the result; a null one, or one whose characters cannot be had, is dropped: the
 *              callback is not called
 */
VANTIRO_API void vantiro_peach_intermediate_callback(vantiro_JNIEnv *jni, vantiro_jobject self,
                                                     vantiro_jstring text);

/**@}*/

/**
 * @name Runs with a single call
 */
/**@{*/

/**
 * @brief Starts a whole run: the Java method `peach(String[])` of the management object.
 *
 * What the strings mean, and what the result means, is the Java library's.
 *
 * @param count  the number of strings
 * @param ...    `count` strings, all `const char *` (see @ref strings_in)
 * @return the Java result, unchanged; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_peach(int count, ...);

/**
 * @brief As vantiro_peach(), with the strings in an array.
 *
 * @param count  the number of strings
 * @param list   the `count` strings (see @ref strings_in)
 * @return the Java result, unchanged; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_peach2(int count, const char **list);

/**
 * @brief As vantiro_peach(), with the strings in an array.
 *
 * @param count  the number of strings
 * @param list   the `count` strings (see @ref strings_in)
 * @return the Java result, unchanged; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_peach3(int count, const char **list);

/**
 * @brief Gives the name of the run's next result file: the Java method `peachNextFile(int)` of the
 *        management object.
 *
 * @param handle  the integer that stands for the run; which one that is, is the Java library's
 * @param buffer  receives the name (see @ref string_buffers)
 * @param size    in: the capacity of `buffer`; out: the length plus 1
 * @return #VANTIRO_OK; #VANTIRO_ERROR_BUFFER_TOO_SMALL; or one of the @ref call_statuses
 * @note Nothing on null: status 0 with `*size` 0 is no name.
 * @note The Java method is called anew each time, as in vantiro_peach_nextFile().
 */
VANTIRO_API int vantiro_peachNextFile(int handle, char *buffer, unsigned int *size);

/**
 * @brief Ends the run: the Java method `peachDone(int)` of the management object.
 *
 * @param handle  as for vantiro_peachNextFile()
 * @return #VANTIRO_OK; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_peachDone(int handle);

/**@}*/

#ifdef __cplusplus
}
#endif

#endif
