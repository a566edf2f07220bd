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
 * @brief Creates and initialises the management object with the Java library's default settings:
 *        the Java method `initFile()`.
 *
 * All four initialisers start the runtime when it is not started yet (see vantiro_initJava()),
 * create a new management object, and call its Java initialiser. Each may be called again at any
 * time: the runtime stays, a new management object replaces the one before. When the Java
 * initialiser fails, the management object is there all the same, and
 * vantiro_getLastErrorMessage() can be asked for the reason.
 *
 * @return the Java result, unchanged; or a status of vantiro_initJava(); or
 *         #VANTIRO_ERROR_CONSTRUCTOR_MISSING (a machine that the library created is destroyed, one
 *         that was joined is left as it was); #VANTIRO_ERROR_INITIALIZATION when the constructor
 *         failed; #VANTIRO_ERROR_INITIALIZER_MISSING; #VANTIRO_ERROR_UNCAUGHT_EXCEPTION when the
 *         Java initialiser threw; #VANTIRO_ERROR_NOT_INITIALIZED when the calling thread could not
 *         be attached
 */
VANTIRO_API int vantiro_init(void);

/**
 * @brief Creates and initialises the management object from a settings file: the Java method
 *        `initFile(String)`.
 *
 * @param file  the settings file's name, for the Java library; null reaches Java as null
 * @return as vantiro_init()
 */
VANTIRO_API int vantiro_initFile(const char *file);

/**
 * @brief Creates and initialises the management object from a settings file and a password: the
 *        Java method `initFile(String, String)`.
 *
 * @param file      the settings file's name, for the Java library; null reaches Java as null
 * @param password  the password; null reaches Java as null
 * @return as vantiro_init()
 */
VANTIRO_API int vantiro_initFileWithPassword(const char *file, const char *password);

/**
 * @brief Creates and initialises the management object from eleven values: the Java method `init`.
 *
 * The meaning of each value is the Java library's; "Settings" in `java/README.md` has that of the
 * local grid (@ref settings). Null strings reach Java as null.
 *
 * @param s1   first value, passed unchanged like all that follow, each in its place
 * @param s2   second value
 * @param s3   third value
 * @param s4   fourth value
 * @param i5   fifth value
 * @param s6   sixth value
 * @param s7   seventh value
 * @param i8   eighth value
 * @param i9   ninth value
 * @param s10  tenth value
 * @param s11  eleventh value
 * @return as vantiro_init()
 */
VANTIRO_API int vantiro_initWithoutFile(const char *s1, const char *s2, const char *s3,
                                        const char *s4, int i5, const char *s6, const char *s7,
                                        int i8, int i9, const char *s10, const char *s11);

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
 * @brief Ends the use of the management library: the Java method `unload(boolean)`.
 *
 * The parallel-each object is forgotten, also when the call then fails with
 * #VANTIRO_ERROR_METHOD_NOT_FOUND or #VANTIRO_ERROR_UNCAUGHT_EXCEPTION; vantiro_peach_handle()
 * obtains a new one. The Java machine and the management object stay: an initialiser may be called
 * again.
 *
 * @param flag  0 or 1; its meaning is the Java library's
 * @return the Java result, unchanged; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_unload(unsigned char flag);

/**
 * @brief Ends the use of the management library: the Java method `unload(boolean, boolean)`.
 *
 * Otherwise as vantiro_unload().
 *
 * @param flag1  0 or 1; its meaning is the Java library's
 * @param flag2  0 or 1; its meaning is the Java library's
 * @return the Java result, unchanged; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_unload2(unsigned char flag1, unsigned char flag2);

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

#ifdef __cplusplus
}
#endif

#endif
