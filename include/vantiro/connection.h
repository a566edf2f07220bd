/**
 * @file vantiro/connection.h
 * @brief Opening and closing, the log level, statistics, plug-ins, and properties of the Java
 *        runtime.
 *
 * What the integers, names and values mean, and in which order vantiro_open(), vantiro_ready(),
 * vantiro_close() and vantiro_cleanup() are to be called, is the Java library's.
 * For the local grid, "Arguments" in `java/README.md` names them one by one (@ref arguments).
 */
#ifndef VANTIRO_CONNECTION_H
#define VANTIRO_CONNECTION_H

#include "vantiro/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/**
 * @brief Opens the management object: the Java method `open()`.
 *
 * @return the Java result, unchanged; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_open(void);

/**
 * @brief Closes: the Java method `close(int)`.
 *
 * @param handle  an integer that the Java library gave out; passed unchanged
 * @return the Java result, unchanged; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_close(int handle);

/**
 * @brief Readies: the Java method `ready(int)`.
 *
 * @param handle  an integer that the Java library gave out; passed unchanged
 * @return the Java result, unchanged; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_ready(int handle);

/**
 * @brief Cleans up: the Java method `cleanup(int, int)`.
 *
 * @param handle  an integer that the Java library gave out; passed unchanged
 * @param value   passed unchanged; its meaning is the Java library's
 * @return the Java result, unchanged; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_cleanup(int handle, int value);

/**
 * @brief Sets the log level: the Java method `setLogLevel(String)`.
 *
 * @param level  the level; the accepted ones are the Java library's (see @ref strings_in)
 * @return the Java result, unchanged; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_setLogLevel(const char *level);

/**
 * @brief Prints statistics: the Java method `printStatistics(int)`.
 *
 * What is printed, and where, is the Java library's.
 *
 * @param handle  an integer that the Java library gave out; passed unchanged
 * @return #VANTIRO_OK; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_printStatistics(int handle);

/**
 * @brief Gives statistics as text: the Java method `getStatisticsString(int)`.
 *
 * @param handle  an integer that the Java library gave out; passed unchanged
 * @param buffer  receives the text (see @ref string_buffers)
 * @param size    in: the capacity of `buffer`; out: the length plus 1
 * @return #VANTIRO_OK; #VANTIRO_ERROR_BUFFER_TOO_SMALL; or one of the @ref call_statuses
 * @note Nothing on null.
 */
VANTIRO_API int vantiro_getStatisticsString(int handle, char *buffer, unsigned int *size);

/**
 * @brief Gives the login of the user: the Java method `getUserLogin()`.
 *
 * @param buffer  receives the login (see @ref string_buffers)
 * @param size    in: the capacity of `buffer`; out: the length plus 1
 * @return #VANTIRO_OK; #VANTIRO_ERROR_BUFFER_TOO_SMALL; or one of the @ref call_statuses
 * @note Empty on null.
 */
VANTIRO_API int vantiro_getUserLogin(char *buffer, unsigned int *size);

/**
 * @brief Gives the management object's temporary directory: the Java method `getTempDir()`.
 *
 * @param buffer  receives the directory (see @ref string_buffers)
 * @param size    in: the capacity of `buffer`; out: the length plus 1
 * @return #VANTIRO_OK; #VANTIRO_ERROR_BUFFER_TOO_SMALL; or one of the @ref call_statuses
 * @note Empty on null.
 */
VANTIRO_API int vantiro_getTempDir(char *buffer, unsigned int *size);

/**
 * @brief Gives a plug-in as a Java object: the Java method `getPlugin(String)`.
 *
 * The object is a local reference of the calling thread. It is valid in that thread alone, until
 * the thread detaches or the frame around the call is popped (see @ref threads); make a global
 * reference of it to use it elsewhere or longer.
 *
 * @param name    the name of the plug-in (see @ref strings_in)
 * @param plugin  receives the plug-in, a `fi/vantiro/user/VantiroManagerPlugin`; must not be null.
 *                With #VANTIRO_OK it may be a null reference, with
 *                #VANTIRO_ERROR_UNCAUGHT_EXCEPTION it is one; with any other status `*plugin` is
 *                left as it was.
 * @return #VANTIRO_OK; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_getPlugin(const char *name, vantiro_jobject *plugin);

/**
 * @brief Gives a plug-in as a Java class: the Java method `getPluginClass(String)`.
 *
 * The class is a local reference of the calling thread, as the object of vantiro_getPlugin() is.
 *
 * @param name  the name of the plug-in (see @ref strings_in)
 * @return the class; null when Java returned null and for each of the @ref call_statuses, which
 *         cannot be told apart
 */
VANTIRO_API vantiro_jclass vantiro_getPluginClass(const char *name);

/**
 * @brief Gives a configuration value of a plug-in: the Java method `getPluginConf(String, String)`.
 *
 * Before initialisation the answer is #VANTIRO_ERROR_NOT_INITIALIZED, `*size` is set to 54 and,
 * when the capacity is at least 54, `buffer` receives the 54 bytes of "No Error Message available;
 * Java is not initialized." and two NULs.
 *
 * @param name    the name of the plug-in (see @ref strings_in)
 * @param key     the key of the value
 * @param buffer  receives the value (see @ref string_buffers)
 * @param size    in: the capacity of `buffer`; out: the length plus 1
 * @return #VANTIRO_OK; #VANTIRO_ERROR_BUFFER_TOO_SMALL; or one of the @ref call_statuses
 * @note Empty on null.
 */
VANTIRO_API int vantiro_getPluginConf(const char *name, const char *key, char *buffer,
                                      unsigned int *size);

/**
 * @brief Gives a system property of the Java machine: the static Java method
 *        `System.getProperty(String)`.
 *
 * It needs no management object: it works as soon as the runtime is started, after
 * vantiro_initJava() alone too, and #VANTIRO_ERROR_NOT_INITIALIZED means that the runtime is not
 * started or that the thread could not be attached.
 *
 * @param key     the name of the property; null or empty makes Java throw
 * @param buffer  receives the value (see @ref string_buffers)
 * @param size    in: the capacity of `buffer`; out: the length plus 1
 * @return #VANTIRO_OK; #VANTIRO_ERROR_BUFFER_TOO_SMALL; or one of the @ref call_statuses
 * @note Nothing on null: status 0 with `*size` 0 is a property that is not set.
 */
VANTIRO_API int vantiro_getJavaSystemProperty(const char *key, char *buffer, unsigned int *size);

#ifdef __cplusplus
}
#endif

#endif
