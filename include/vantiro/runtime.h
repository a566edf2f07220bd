/**
 * @file vantiro/runtime.h
 * @brief Starting the Java runtime, the initialisers, teardown, and direct access to the runtime.
 */
#ifndef VANTIRO_RUNTIME_H
#define VANTIRO_RUNTIME_H

#include "vantiro/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/**
 * @defgroup start Starting and ending
 * @brief One initialiser starts Java inside the process and reads the settings; unloading ends all.
 *
 * Settings come from a file (vantiro_init(), vantiro_initFile()), or from the program
 * (vantiro_initWithoutFile()). The @ref page-java-readme-settings
 * "page of the local grid" names them all.
 *
 * @code
 * // A home of its own, two jobs at once, each killed after 60 seconds; all else by default.
 * int status = vantiro_initWithoutFile("/scratch/me/grid", NULL, NULL, NULL, 2, NULL, NULL, 60, 0,
 *                                      NULL, NULL);
 * if (status < 0) {
 *   char why[1024] = "";
 *   unsigned int size = sizeof why;
 *   vantiro_getLastErrorMessage(why, &size);
 *   fprintf(stderr, "the grid does not start (%d): %s\n", status, why);
 * }
 * // ... sessions, projects, runs ...
 * vantiro_unload(1);  // stop what still runs
 * @endcode
 * @{
 */

/**
 * @brief Starts the Java runtime without creating a management object.
 *
 * The initialisers call it when it is needed. It looks for the runtime library (`libjvm.so`) in
 * this order, and takes the first that is found:
 * 1. the value of the key `JVMPATH` in the file `VantiroDLL.conf` beside this library, as it
 *    stands, found or not;
 * 2. below the directory that the environment variable `JAVA_HOME` names:
 *    `jre/lib/i386/server/`, `jre/i386/client/`, `lib/i386/server/`, `lib/i386/client/`; in a
 *    64-bit library `lib/server/`, `jre/lib/amd64/server/`, `lib/amd64/server/`;
 * 3. vantiro_findJavaInPath();
 * 4. the dynamic loader's own search for `libjvm.so`.
 *
 * A path of more than 4095 characters is passed over like one that does not exist, and so is a
 * named pipe. In a program that runs with more rights than its caller (set-user-ID), `JAVA_HOME`
 * and `PATH` are not looked at.
 *
 * When a Java machine already runs in the process it is joined, and its own class path must lead
 * to the management class. Otherwise one is created, with `vantiro.jar`, `commons-codec-1.3.jar`
 * and `xmlrpc-2.0.jar` of this library's own directory as its class path and the options `-Xmx128M`
 * and `-Dcom.sun.management.jmxremote`; further options can be given in the environment variable
 * `JAVA_TOOL_OPTIONS`.
 *
 * When the runtime is started already, the runtime library and the management class are looked up
 * again, and only the thread that started the runtime may call it.
 *
 * @retval VANTIRO_OK  the runtime is started
 * @retval VANTIRO_ERROR_RUNTIME_NOT_FOUND  the runtime library could not be loaded or is none; the
 *         loader's own words are on standard output
 * @retval VANTIRO_ERROR_NOT_INITIALIZED  the machine could not be created or joined, there was no
 *         memory for its options, or the program has a variable of its own named `env`
 * @retval VANTIRO_ERROR_METHOD_NOT_FOUND  the machine has no management class: `vantiro.jar` is
 *         missing or is not what it should be. A machine that was created for the call is
 *         destroyed; one that was joined is left as it was.
 */
VANTIRO_API int vantiro_initJava(void);

/**
 * @brief Starts with the settings that lie ready: the Java method `initFile()`.
 *
 * They are those of the file that the environment variable `VANTIRO_SETTINGS` names, or else of
 * `vantiro.properties` in the current directory; without both the defaults hold: the grid's home is
 * `.vantiro-grid` in the user's home, and as many jobs run at once as there are processors. In a
 * set-user-ID program the defaults always hold.
 *
 * All four initialisers start the runtime when it is not started yet (see vantiro_initJava()),
 * create a new management object, and call its Java initialiser. Each may be called again at any
 * time: the runtime stays, a new management object replaces the one before. When the Java
 * initialiser fails, the management object is there all the same, with default settings, and
 * vantiro_getLastErrorMessage() can be asked for the reason. Sessions, projects and runs of an
 * earlier initialiser go on, with the settings that they have.
 *
 * Nothing is written to the grid's home before vantiro_open() or vantiro_peach_handle().
 *
 * @return 0; -2 when the settings cannot be read or one is wrong; -3 when the file wants a
 *         password; -10 for an unknown log level; or a status of vantiro_initJava(); or
 *         #VANTIRO_ERROR_CONSTRUCTOR_MISSING (a machine that the library created is destroyed, one
 *         that was joined is left as it was); #VANTIRO_ERROR_INITIALIZATION when the constructor
 *         failed; #VANTIRO_ERROR_INITIALIZER_MISSING; #VANTIRO_ERROR_UNCAUGHT_EXCEPTION when the
 *         Java initialiser threw; #VANTIRO_ERROR_NOT_INITIALIZED when the calling thread could not
 *         be attached
 */
VANTIRO_API int vantiro_init(void);

/**
 * @brief Starts with the settings of a file: the Java method `initFile(String)`.
 *
 * No other file is read. Keys that it does not have take their defaults; a key that is not known is
 * an error (-2), whose text lists those that are.
 *
 * @param file  the path of a file of Java properties in UTF-8: lines `key=value`; null is refused
 * @return as vantiro_init()
 */
VANTIRO_API int vantiro_initFile(const char *file);

/**
 * @brief Starts with the settings of a file that wants a password: the Java method
 *        `initFile(String, String)`.
 *
 * @param file      as for vantiro_initFile()
 * @param password  what the file's key `grid.password` says; without that key it is not looked at
 * @return as vantiro_init(); -3 when the password is another one
 */
VANTIRO_API int vantiro_initFileWithPassword(const char *file, const char *password);

/**
 * @brief Starts with settings that the program gives: the Java method `init`.
 *
 * A value that is null, empty or 0 is left to the settings file that `further_file` names, or else
 * to the one that the environment variable `VANTIRO_SETTINGS` names; without both, to the default.
 * `vantiro.properties` is not read.
 *
 * @param home          the directory where the grid keeps its files, made when it is needed
 *                      (`grid.home`); by default `.vantiro-grid` in the user's home. Programs may
 *                      share it
 * @param login         what vantiro_getUserLogin() says (`user.login`); by default the system's
 *                      name of the user
 * @param password      the password of the settings file, if it wants one (`grid.password`)
 * @param temp_dir      an existing directory that jobs find as `TMPDIR` (`temp.dir`); by default
 *                      Java's, which is `/tmp`
 * @param processors    how many jobs run at once (`grid.processors`); 0: as many as the machine has
 *                      processors
 * @param log_level     as for vantiro_setLogLevel() (`log.level`); by default `WARNING`
 * @param download_dir  where projects download to that are not told otherwise by
 *                      vantiro_setDownloadDir(): each to `project-<number>/` in it
 *                      (`download.dir`); by default none
 * @param job_timeout   seconds after which a job is killed and has failed (`job.timeout`); 0: never
 * @param keep_work     1 keeps the working directories of ended jobs, to look into them
 *                      (`keep.work`); 0: they are removed
 * @param unzip_dir     where projects unpack to that are not told otherwise by
 *                      vantiro_setUnzipDir() (`unzip.dir`); by default the download directory
 * @param further_file  a settings file for what is left open, and for the keys that have no
 *                      parameter here, such as `job.launcher`
 * @return as vantiro_init(); -2 also for a directory `temp_dir` that does not exist, or a negative
 *         number
 */
VANTIRO_API int vantiro_initWithoutFile(const char *home, const char *login, const char *password,
                                        const char *temp_dir, int processors, const char *log_level,
                                        const char *download_dir, int job_timeout, int keep_work,
                                        const char *unzip_dir, const char *further_file);

/**
 * @brief Ends all projects and runs, and forgets every handle: the Java method `unload(boolean)`.
 *
 * It returns when all jobs have ended. Meanwhile nothing new is opened or created (-4). Files in
 * the grid's home stay. A program that ends without it leaves nothing running: its jobs are killed.
 *
 * The parallel-each object is forgotten, also when the call then fails with
 * #VANTIRO_ERROR_METHOD_NOT_FOUND or #VANTIRO_ERROR_UNCAUGHT_EXCEPTION; vantiro_peach_handle()
 * obtains a new one. The Java machine and the management object stay, with their settings: sessions
 * can be opened again, and an initialiser may be called again.
 *
 * @param stop  1 kills the jobs that run and drops those that wait; 0 waits until all jobs that
 *              were started have ended
 * @return 0; -4 when another thread unloads already; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_unload(unsigned char stop);

/**
 * @brief As vantiro_unload(), and may remove files: the Java method `unload(boolean, boolean)`.
 *
 * @param stop    as for vantiro_unload()
 * @param remove  1 removes the files of all projects from the grid's home, their results included;
 *                0 keeps them. Bundles stay
 * @return as vantiro_unload(); -1 when a file cannot be removed
 */
VANTIRO_API int vantiro_unload2(unsigned char stop, unsigned char remove);

/** @} */

/**
 * @defgroup machine Access to the Java machine
 * @brief For programs that use Java themselves, and what the library holds.
 * @{
 */

/**
 * @brief Looks for a Java runtime library by way of the `java` launchers on `PATH`.
 *
 * Links to a launcher are followed, at most 40 in a row; a relative link is taken relative to the
 * current directory. Below the directory three levels above the launcher these are tried:
 * `jre/lib/i386/client/`, `jre/lib/i386/server/`, `lib/i386/client/`, `lib/i386/server/`. In a
 * 64-bit library it is the directory two levels above the launcher, with the places that are tried
 * below `JAVA_HOME`. The environment is left unchanged. Needs no runtime.
 *
 * @param buffer  4096 bytes, receives the path of `libjvm.so`; without success, whatever path was
 *                tried last, or nothing
 * @return 0 when a runtime library was found, else -1; -1 also when `buffer` is null
 */
VANTIRO_API int vantiro_findJavaInPath(char *buffer);

/**
 * @brief Gives the JNI environment of the thread that last ran an initialiser.
 *
 * Another thread gets its own with `AttachCurrentThread` through vantiro_getJavaVM().
 *
 * @return the environment; null while the runtime is not started
 */
VANTIRO_API vantiro_JNIEnv *vantiro_getJNIEnv(void);

/**
 * @brief Gives the Java machine.
 *
 * @return the machine; null before the first start; after a start that failed, the pointer of a
 *         machine that is gone
 */
VANTIRO_API vantiro_JavaVM *vantiro_getJavaVM(void);

/** @brief Does nothing; kept for programs that call it. */
VANTIRO_API void vantiro_debug(void);

/** @brief Does nothing; kept for programs that call it. */
VANTIRO_API void vantiro_debug2(void);

/**
 * @name Host state
 * What the library holds, for programs that want to look: null when the library is loaded, and
 * written by the library alone. Define `VANTIRO_NO_HOST_STATE` before including the header to keep
 * these short names out of your program.
 */
/**@{*/
#ifndef VANTIRO_NO_HOST_STATE
/** The Java machine of the process; it keeps its value when the machine is destroyed. */
extern VANTIRO_API vantiro_JavaVM *jvm;
/** The JNI environment of the thread that last ran an initialiser; not null while started. */
extern VANTIRO_API vantiro_JNIEnv *env;
/** The management class, as a global reference. */
extern VANTIRO_API vantiro_jclass cls;
/** The management object, as a global reference. */
extern VANTIRO_API vantiro_jobject sgc;
/** The class of the parallel-each object, as a global reference. */
extern VANTIRO_API vantiro_jclass pwcls;
/** The parallel-each object, as a global reference. */
extern VANTIRO_API vantiro_jobject pwobj;
/** What `dlopen` returned for the runtime library; it is never closed. */
extern VANTIRO_API void *jvmlibHandle;
/** The function that receives intermediate results. */
extern VANTIRO_API void (*vantiro_peach_intermediate_callback_fun)(const char *text);
#endif
/**@}*/
/** @} */

#ifdef __cplusplus
}
#endif

#endif
