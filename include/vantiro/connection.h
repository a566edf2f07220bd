/**
 * @file vantiro/connection.h
 * @brief Sessions, the grid's home, statistics, plug-ins, and properties of the Java runtime.
 */
#ifndef VANTIRO_CONNECTION_H
#define VANTIRO_CONNECTION_H

#include "vantiro/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/**
 * @defgroup sessions Sessions and the grid's home
 * @brief A session is what projects are created in; the grid's home is where their files are.
 *
 * An initialiser comes first (see @ref start). Parallel-each runs need no session.
 *
 * @code
 * int session = vantiro_open();
 * if (session < 0 || vantiro_ready(session) != 1) return 1;  // the home cannot be written
 * printf("%d directories removed\n", vantiro_cleanup(session, 0));
 * // ... projects ...
 * vantiro_close(session);
 * @endcode
 * @{
 */

/**
 * @brief Opens a session: the Java method `open()`.
 *
 * @return the session's handle, positive; -1 when the grid's home cannot be made or written, or
 *         belongs to another user; -4 while the grid is being unloaded; or one of the
 *         @ref call_statuses
 */
VANTIRO_API int vantiro_open(void);

/**
 * @brief Closes a session: the Java method `close(int)`.
 *
 * Its projects live on; no more can be created in it.
 *
 * @param session  the session's handle
 * @return 0; -4 when it is closed already; or one of the @ref call_statuses,
 *         #VANTIRO_ERROR_UNCAUGHT_EXCEPTION when there is none
 */
VANTIRO_API int vantiro_close(int session);

/**
 * @brief Tells whether a session is open and the grid's home can be written: the Java method
 *        `ready(int)`.
 *
 * @param session  the session's handle
 * @return 1 or 0, with the reason in vantiro_getLastErrorMessage(); or one of the
 *         @ref call_statuses, which are not a yes
 */
VANTIRO_API int vantiro_ready(int session);

/**
 * @brief Removes what ended projects left in the grid's home: the Java method `cleanup(int, int)`.
 *
 * It looks at the projects of this program that have completed, and at those of programs that are
 * gone; what other living programs have there is left alone.
 *
 * @param session  the handle of a session that is open
 * @param results  0 removes working directories; any other value the results, too, which then
 *                 cannot be downloaded any more
 * @return the number of directories that were removed; what cannot be removed is told in the log;
 * -4 when the session is closed; -1 when the home cannot be locked; or one of the
 *         @ref call_statuses
 */
VANTIRO_API int vantiro_cleanup(int session, int results);

/**
 * @brief Sets what the grid writes to its log, which is standard error: the Java method
 *        `setLogLevel(String)`.
 *
 * There is one log for the process. Until it is called, the setting `log.level` holds, or
 * `WARNING`.
 *
 * @param level  `OFF`, `SEVERE`, `WARNING`, `INFO`, `CONFIG`, `FINE` (every failure and every
 *               change of a job's state), `FINER`, `FINEST` or `ALL`, in any case of letters; not
 *               null
 * @return 0; -10 for another level; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_setLogLevel(const char *level);

/**
 * @brief Prints what vantiro_getStatisticsString() gives on standard output: the Java method
 *        `printStatistics(int)`.
 *
 * @param handle  the handle of a session, or of a project
 * @return #VANTIRO_OK; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_printStatistics(int handle);

/**
 * @brief Gives a line for each project of a session, or for one project: the Java method
 *        `getStatisticsString(int)`.
 *
 * A line has the project's description and the figures of vantiro_getProjectStatistic().
 *
 * @param handle  the handle of a session, or of a project
 * @param buffer  receives the text (see @ref string_buffers)
 * @param size    in: the capacity of `buffer`; out: the length plus 1
 * @return #VANTIRO_OK; #VANTIRO_ERROR_BUFFER_TOO_SMALL; or one of the @ref call_statuses
 * @note Nothing on null.
 */
VANTIRO_API int vantiro_getStatisticsString(int handle, char *buffer, unsigned int *size);

/**
 * @brief Gives the login of the user: the Java method `getUserLogin()`.
 *
 * @param buffer  receives the setting `user.login`, or else the system's name of the user
 *                (see @ref string_buffers)
 * @param size    in: the capacity of `buffer`; out: the length plus 1
 * @return #VANTIRO_OK; #VANTIRO_ERROR_BUFFER_TOO_SMALL; or one of the @ref call_statuses
 * @note Empty on null.
 */
VANTIRO_API int vantiro_getUserLogin(char *buffer, unsigned int *size);

/**
 * @brief Gives the directory that jobs find as `TMPDIR`: the Java method `getTempDir()`.
 *
 * @param buffer  receives the setting `temp.dir`, or else Java's directory for temporary files
 *                (see @ref string_buffers)
 * @param size    in: the capacity of `buffer`; out: the length plus 1
 * @return #VANTIRO_OK; #VANTIRO_ERROR_BUFFER_TOO_SMALL; or one of the @ref call_statuses
 * @note Empty on null.
 */
VANTIRO_API int vantiro_getTempDir(char *buffer, unsigned int *size);

/** @} */

/**
 * @defgroup plugins Plug-ins and the Java runtime
 * @brief Java classes that the settings name, and what the Java machine says of itself.
 *
 * A plug-in is named in the settings file by `plugin.<name>.class`, and gets the values of
 * `plugin.<name>.<key>`. `fi.vantiro.localgrid.MachinePlugin` is one to try.
 *
 * @code
 * char label[64] = "";
 * unsigned int size = sizeof label;
 * vantiro_getPluginConf("machine", "label", label, &size);  // plugin.machine.label=...
 * size = sizeof label;
 * vantiro_getJavaSystemProperty("java.version", label, &size);
 * @endcode
 * @{
 */

/**
 * @brief Gives a plug-in as a Java object: the Java method `getPlugin(String)`.
 *
 * It is made when it is first asked for. The object is a local reference of the calling thread: it
 * is valid in that thread alone, until the thread detaches or the frame around the call is popped
 * (see @ref threads); make a global reference of it to use it elsewhere or longer.
 *
 * @param name    the name of the plug-in, not null
 * @param plugin  receives the plug-in, a `fi/vantiro/user/VantiroManagerPlugin`; must not be null.
 *                With #VANTIRO_OK it may be a null reference, when the settings have none of that
 *                name; with #VANTIRO_ERROR_UNCAUGHT_EXCEPTION it is one; with any other status
 *                `*plugin` is left as it was.
 * @return #VANTIRO_OK; or one of the @ref call_statuses, #VANTIRO_ERROR_UNCAUGHT_EXCEPTION also
 *         when the plug-in's class cannot be found or made
 */
VANTIRO_API int vantiro_getPlugin(const char *name, vantiro_jobject *plugin);

/**
 * @brief Gives a plug-in as a Java class: the Java method `getPluginClass(String)`.
 *
 * The class is a local reference of the calling thread, as the object of vantiro_getPlugin() is.
 *
 * @param name  the name of the plug-in, not null
 * @return the class; null when the settings have no plug-in of that name and for each of the
 *         @ref call_statuses, which cannot be told apart
 */
VANTIRO_API vantiro_jclass vantiro_getPluginClass(const char *name);

/**
 * @brief Gives a value that the settings have for a plug-in: the Java method
 *        `getPluginConf(String, String)`.
 *
 * Before initialisation the answer is #VANTIRO_ERROR_NOT_INITIALIZED, `*size` is set to 54 and,
 * when the capacity is at least 54, `buffer` receives the 54 bytes of "No Error Message available;
 * Java is not initialized." and two NULs.
 *
 * @param name    the name of the plug-in, not null
 * @param key     the key of the value: what follows `plugin.<name>.` in the settings; not null
 * @param buffer  receives the value (see @ref string_buffers)
 * @param size    in: the capacity of `buffer`; out: the length plus 1
 * @return #VANTIRO_OK; #VANTIRO_ERROR_BUFFER_TOO_SMALL; or one of the @ref call_statuses
 * @note Empty on null: a value that is not set.
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
 * @param key     the name of the property, such as `java.version`; null or empty makes Java throw
 * @param buffer  receives the value (see @ref string_buffers)
 * @param size    in: the capacity of `buffer`; out: the length plus 1
 * @return #VANTIRO_OK; #VANTIRO_ERROR_BUFFER_TOO_SMALL; or one of the @ref call_statuses
 * @note Nothing on null: status 0 with `*size` 0 is a property that is not set.
 */
VANTIRO_API int vantiro_getJavaSystemProperty(const char *key, char *buffer, unsigned int *size);

/** @} */

#ifdef __cplusplus
}
#endif

#endif
