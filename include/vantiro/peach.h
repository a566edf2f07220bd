/**
 * @file vantiro/peach.h
 * @brief Parallel-each runs: one program, run once for each of many inputs.
 */
#ifndef VANTIRO_PEACH_H
#define VANTIRO_PEACH_H

#include "vantiro/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/**
 * @defgroup each Running one program over many inputs
 * @brief A parallel-each run, from its beginning to its end.
 *
 * A run takes these steps:
 *
 * 1. vantiro_peach_handle() begins it;
 * 2. the functions of @ref each_settings, @ref each_program and @ref each_inputs describe it;
 *    vantiro_peach_setExecutable() is the one that is always needed, unless
 *    vantiro_peach_setExeBundleName() names a bundle that brings its program;
 * 3. vantiro_peach_execute() has all jobs run, and returns when they have ended;
 * 4. vantiro_peach_nextFile(), again and again, gives the files that the jobs left;
 * 5. vantiro_peach_done() ends it.
 *
 * It needs an initialiser before it, and no session. Several runs may execute at once, each in a
 * thread of its own; they share the processors.
 *
 * @code
 * char path[PATH_MAX];
 * unsigned int size = sizeof path;
 * int run = vantiro_peach_handle();
 * vantiro_peach_setExecutable(run, "wc -l < text > count");
 * vantiro_peach_setJobFileNames(run, 1, "text");
 * vantiro_peach_addJobFile(run, 1, "one.txt");
 * vantiro_peach_addJobFile(run, 1, "two.txt");
 * vantiro_peach_addOutputFile(run, "count");
 * if (vantiro_peach_execute(run) == 0)
 *   while (vantiro_peach_nextFile(run, path, &size) == 0 && size != 0) {
 *     puts(path);
 *     size = sizeof path;
 *   }
 * vantiro_peach_done(run);
 * @endcode
 *
 * @section peach_statuses Statuses of the parallel-each object
 *
 * The functions that take the handle of a run call the parallel-each object, with the handle as the
 * first Java argument. They return the @ref call_statuses, but #VANTIRO_ERROR_NOT_INITIALIZED means
 * that there is no such object: vantiro_peach_handle() has not succeeded yet, or not since
 * vantiro_unload() or vantiro_unload2(). It is also returned when the calling thread could not be
 * attached. The caller sees to it that no other thread is in such a call during an unload.
 * #VANTIRO_ERROR_UNCAUGHT_EXCEPTION means that the run is not known or has ended, that an argument
 * is wrong, or that the run executes already and cannot be described further;
 * vantiro_peach_getLastErrorMessage() and vantiro_getLastErrorMessage() say which.
 * @{
 */

/**
 * @brief Begins a run: the Java method `get()` of the parallel-each object.
 *
 * The run has a project of its own, called `peach` until vantiro_peach_setName() names it, and one
 * job until it is told of more. It stays until vantiro_peach_done(), which every run wants.
 *
 * The first call, and the first one after vantiro_unload() or vantiro_unload2(), obtains the
 * parallel-each object from the management object with the Java method `getPeachWrapper()`. When
 * that fails there is still no object, and the next call tries again. When two threads make the
 * first call at once, both obtain an object and the later one stays. Runs belong to the settings of
 * the initialiser that was the last one when that object was obtained.
 *
 * @return the run's handle, positive; -1 when the grid's home cannot be written, -4 while the grid
 *         is being unloaded; or one of the @ref call_statuses.
 *         #VANTIRO_ERROR_UNCAUGHT_EXCEPTION also when the Java library has no class
 *         `fi/vantiro/user/PeachWrapper` or `getPeachWrapper()` returned null.
 */
VANTIRO_API int vantiro_peach_handle(void);

/**
 * @brief Has all jobs of the run run, and returns when they have ended: the Java method
 *        `execute(int)`.
 *
 * Before the first job starts, inputs are looked for, and the outputs that an earlier run left in
 * the state directory are removed. Receivers of intermediate results are called by this thread,
 * before it returns. A run executes once: one that failed, for want of an input say, is described
 * anew as another run.
 *
 * When a job fails the others go on. Then the result is negative and the run's files are not handed
 * out, unless vantiro_peach_setAllowPartial() was set. vantiro_peach_getLastErrorMessage() names
 * the failed jobs, up to ten, each with its command, its exit status and the end of its standard
 * error.
 *
 * @param run  the run's handle
 * @return 0; -5 when at least one job failed; -9 when vantiro_stopProject() or another thread's
 *         vantiro_peach_done() stopped it; -4 without an executable, when it was executed before,
 *         when another run works in its state directory, or when there are files for more jobs than
 *         vantiro_peach_setJobs() says; -6 without the bundle; -8 without an input; -1 when files
 *         cannot be written; or one of the @ref peach_statuses,
 *         #VANTIRO_ERROR_UNCAUGHT_EXCEPTION also for two files that one job would find under one
 *         name
 */
VANTIRO_API int vantiro_peach_execute(int run);

/**
 * @brief Gives the path of the next file that a job left: the Java method `nextFile(int)`.
 *
 * Files are those of vantiro_peach_addOutputFile(), or all that the jobs wrote when none is listed;
 * `stdout` and `stderr` are among them when they are listed by these names or nothing is. They come
 * in the order of the jobs, and lie in `job-1/`, `job-2/` and so on below the state directory.
 * After vantiro_peach_setStream() another thread may ask while the run executes, and gets the files
 * of each job that has succeeded, in the order in which they end.
 *
 * The files of failed jobs are not handed out. Each file is handed out once, also when its name did
 * not fit: give the buffer 4096 bytes, the `PATH_MAX` of `<limits.h>`.
 *
 * @param run     the run's handle
 * @param buffer  receives the absolute path (see @ref string_buffers)
 * @param size    in: the capacity of `buffer`; out: the length plus 1, or 0 when there is no file
 * @return #VANTIRO_OK; #VANTIRO_ERROR_BUFFER_TOO_SMALL; or one of the @ref peach_statuses.
 *         #VANTIRO_ERROR_UNCAUGHT_EXCEPTION also when a later run replaced the files.
 * @note Nothing on null: status 0 with `*size` 0 means that there is no file at present, and after
 *       vantiro_peach_execute() has returned, that there are no more.
 */
VANTIRO_API int vantiro_peach_nextFile(int run, char *buffer, unsigned int *size);

/**
 * @brief Says that the caller is through with a file: the Java method `postProcessed(int, int)`.
 *
 * With vantiro_peach_setCleanup(), vantiro_peach_done() then removes it; without, nothing follows.
 *
 * @param run     the run's handle
 * @param number  which file: 1 is the first that vantiro_peach_nextFile() handed out
 * @return #VANTIRO_OK; or one of the @ref peach_statuses. #VANTIRO_ERROR_UNCAUGHT_EXCEPTION also
 *         when no file of that number was handed out.
 */
VANTIRO_API int vantiro_peach_postProcessed(int run, int number);

/**
 * @brief Ends the run and forgets its handle: the Java method `done(int)`.
 *
 * What still executes is stopped and waited for. The run's files stay where they are, unless
 * vantiro_peach_setCleanup() or vantiro_peach_setRemove() say otherwise.
 *
 * @param run  the run's handle
 * @return #VANTIRO_OK; or one of the @ref peach_statuses
 */
VANTIRO_API int vantiro_peach_done(int run);

/**
 * @brief Gives the handle of the run's project: the Java method `getProjectHandle(int)`.
 *
 * With it the functions of @ref results tell how far the run is (vantiro_getProjectStatistic()),
 * vantiro_stopProject() stops it from another thread, and vantiro_sendJobPostParameter() reaches
 * its jobs. The project stays after vantiro_peach_done(), unless vantiro_peach_setRemove() is set
 * or the run was never executed.
 *
 * @param run  the run's handle
 * @return the project's handle, positive; or one of the @ref peach_statuses
 */
VANTIRO_API int vantiro_peach_getProjectHandle(int run);

/**
 * @brief Gives the number of the run's project: the Java method `getProjectId(int)`.
 *
 * It is what vantiro_getProjectId() gives for the project, and the jobs find as `VANTIRO_PROJECT`.
 *
 * @param run  the run's handle
 * @return the number; or one of the @ref peach_statuses
 */
VANTIRO_API int vantiro_peach_getProjectId(int run);

/**
 * @brief Tells whether the sources differ from those of the last run in the same state directory:
 *        the Java method `sourcesChanged(int)`.
 *
 * Sources are the files of vantiro_peach_addSourceFile(), by their contents, and the values of
 * vantiro_peach_putSourceExtras(). Asked before vantiro_peach_execute() it tells whether a program
 * has to be compiled anew; afterwards, whether it had. Without vantiro_peach_setStateDir() there is
 * no last run, and sources have always changed when there are any.
 *
 * @param run  the run's handle
 * @return 1 or 0; or one of the @ref peach_statuses, which are not a yes
 */
VANTIRO_API int vantiro_peach_sourcesChanged(int run);

/**
 * @brief Gives the text of the run's last failure: the Java method `getLastErrorMessage(int)`.
 *
 * Unlike vantiro_getLastErrorMessage() it knows of this run alone. Ask it before
 * vantiro_peach_done().
 *
 * @param run     the run's handle
 * @param buffer  receives the text (see @ref string_buffers)
 * @param size    in: the capacity of `buffer`; out: the length plus 1
 * @return #VANTIRO_OK; #VANTIRO_ERROR_BUFFER_TOO_SMALL; or one of the @ref peach_statuses
 * @note Nothing on null, which means that nothing failed.
 */
VANTIRO_API int vantiro_peach_getLastErrorMessage(int run, char *buffer, unsigned int *size);

/** @} */

/**
 * @defgroup each_now Results while a run executes
 * @ingroup each
 * @brief What the jobs write to their standard output, as they write it.
 *
 * @code
 * static void receive(const char *text) { printf("job %s\n", text); }  // "job 3:half way"
 *
 * vantiro_peach_setExecutable(run, "echo half way; sleep 1; echo done");
 * vantiro_peach_setIntermediateResultHandler(run, receive);
 * vantiro_peach_execute(run);
 * @endcode
 *
 * For whole files while other jobs run, see vantiro_peach_setStream().
 * @{
 */

/**
 * @brief Has the lines that the jobs write to their standard output handed to a function: the Java
 *        method `setIntermediateResultHandler(int, IntermediateResultHandler)`.
 *
 * Each line comes as `<job>:<line>`, jobs being numbered from 1: in order for each job, and a last
 * line without its end too. A line of more than 64 KiB comes in pieces, of which all but the last
 * are `<job>+<piece>`; lines of other jobs may come between them.
 *
 * The callback is called by the thread that executes the run, one call at a time, and all calls are
 * over when vantiro_peach_execute() returns. It may call what it likes: start other runs and wait
 * for them, stop this one by vantiro_stopProject(); but vantiro_peach_done() of the run itself is
 * refused. It must not let a C++ exception out. `text` is valid only during the call: a callback
 * that keeps it copies it.
 *
 * Jobs that began before their run had a registration send nothing.
 *
 * Each run needs a registration of its own, but there is one callback for the process: all runs
 * deliver to that of the latest call that succeeded. A call that fails leaves the callback as it
 * was; vantiro_unload() and vantiro_unload2() do not reset it. A delivery that overlaps a
 * registration calls the old callback or the new one, so the old one must stay callable.
 *
 * @param run       the run's handle
 * @param callback  receives each line as a NUL-terminated string in modified UTF-8; null drops them
 * @return #VANTIRO_OK; or one of the @ref peach_statuses. #VANTIRO_ERROR_METHOD_NOT_FOUND also when
 *         `fi/vantiro/user/NativeFunctionCaller` has no constructor without parameters;
 *         #VANTIRO_ERROR_UNCAUGHT_EXCEPTION also when that class is missing, or it could not be
 *         created or bound to this library.
 */
VANTIRO_API int vantiro_peach_setIntermediateResultHandler(int run,
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

/** @} */

/**
 * @defgroup each_single A run in a single call
 * @ingroup each
 * @brief The same, described by strings.
 *
 * @code
 * char path[PATH_MAX];
 * unsigned int size = sizeof path;
 * int run = vantiro_peach(4, "executable=wc -l < text > count", "jobFileNames=text",
 *                         "jobFile=one.txt", "jobFile=two.txt");
 * while (run > 0 && vantiro_peachNextFile(run, path, &size) == 0 && size != 0) {
 *   puts(path);
 *   size = sizeof path;
 * }
 * if (run > 0) vantiro_peachDone(run);
 * @endcode
 * @{
 */

/**
 * @brief Describes a run and executes it: the Java method `peach(String[])` of the management
 *        object.
 *
 * Each string is `key=value`, and stands for one function of vantiro/peach_settings.h or
 * vantiro/peach_inputs.h: the key is its name without `vantiro_peach_` and `set`, `add`, `put` or
 * `new`, the first letter small (`jobs=16`, `outputFile=*.txt`, `dataBundle=tables`). Several
 * arguments of one function are separated by commas (`jobFile=a.txt,b.txt`,
 * `exeFile=tool,tool,,755`), those of the `put` functions by `=`, with a key in the singular
 * (`jobExtra=unit=mm`). Flags are 0 or 1. A file with a comma in its name takes the functions
 * themselves.
 *
 * @param count  the number of strings
 * @param ...    `count` strings, all `const char *` (see @ref strings_in)
 * @return the handle of the run, positive, which vantiro_peachDone() ends; or a negative code as
 *         that of vantiro_peach_execute(), and nothing is left that would have to be ended;
 *         vantiro_getLastErrorMessage() has the text. #VANTIRO_ERROR_UNCAUGHT_EXCEPTION for a key
 *         that is not known, whose message lists those that are; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_peach(int count, ...);

/**
 * @brief As vantiro_peach(), with the strings in an array.
 *
 * @param count  the number of strings
 * @param list   the `count` strings (see @ref strings_in)
 * @return as vantiro_peach()
 */
VANTIRO_API int vantiro_peach2(int count, const char **list);

/**
 * @brief As vantiro_peach(), with the strings in an array.
 *
 * @param count  the number of strings
 * @param list   the `count` strings (see @ref strings_in)
 * @return as vantiro_peach()
 */
VANTIRO_API int vantiro_peach3(int count, const char **list);

/**
 * @brief Gives the path of the next file that a job left: the Java method `peachNextFile(int)` of
 *        the management object.
 *
 * It does what vantiro_peach_nextFile() does, which has the details.
 *
 * @param run     what vantiro_peach() returned
 * @param buffer  receives the absolute path (see @ref string_buffers); 4096 bytes
 * @param size    in: the capacity of `buffer`; out: the length plus 1, or 0 when there is no file
 * @return #VANTIRO_OK; #VANTIRO_ERROR_BUFFER_TOO_SMALL; or one of the @ref call_statuses
 * @note Nothing on null: status 0 with `*size` 0 means that there are no more files.
 */
VANTIRO_API int vantiro_peachNextFile(int run, char *buffer, unsigned int *size);

/**
 * @brief Ends the run and forgets its handle: the Java method `peachDone(int)` of the management
 *        object.
 *
 * It does what vantiro_peach_done() does.
 *
 * @param run  what vantiro_peach() returned
 * @return #VANTIRO_OK; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_peachDone(int run);

/** @} */

#ifdef __cplusplus
}
#endif

#endif
