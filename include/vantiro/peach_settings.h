/**
 * @file vantiro/peach_settings.h
 * @brief Describing a parallel-each run that has a handle, before it is executed.
 *
 * Each function calls the Java method of the parallel-each object (see vantiro_peach_handle()).
 * This library keeps no setting and checks none: accepted values, and the meaning of the settings
 * beyond their names, are the Java library's.
 * For the local grid, "Arguments" in `java/README.md` names them one by one (@ref arguments).
 */
#ifndef VANTIRO_PEACH_SETTINGS_H
#define VANTIRO_PEACH_SETTINGS_H

#include "vantiro/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/**
 * @name Project settings of the run
 */
/**@{*/

/**
 * @brief Sets the name: the Java method `setName(int, String)`.
 *
 * @param handle  the peach handle
 * @param name    the name (see @ref strings_in)
 * @return #VANTIRO_OK; or one of the @ref peach_statuses
 */
VANTIRO_API int vantiro_peach_setName(int handle, const char *name);

/**
 * @brief Sets the state directory: the Java method `setStateDir(int, String)`.
 *
 * @param handle  the peach handle
 * @param dir     the directory (see @ref strings_in)
 * @return #VANTIRO_OK; or one of the @ref peach_statuses
 */
VANTIRO_API int vantiro_peach_setStateDir(int handle, const char *dir);

/**
 * @brief Sets the description: the Java method `setDescription(int, String)`.
 *
 * @param handle       the peach handle
 * @param description  the description (see @ref strings_in)
 * @return #VANTIRO_OK; or one of the @ref peach_statuses
 */
VANTIRO_API int vantiro_peach_setDescription(int handle, const char *description);

/**
 * @brief Sets the messages flag: the Java method `setMessages(int, boolean)`.
 *
 * @param handle  the peach handle
 * @param flag    0 or 1
 * @return #VANTIRO_OK; or one of the @ref peach_statuses
 */
VANTIRO_API int vantiro_peach_setMessages(int handle, unsigned char flag);

/**
 * @brief Sets the priority as a number: the Java method `setPriority(int, int)`.
 *
 * @param handle    the peach handle
 * @param priority  the priority
 * @return #VANTIRO_OK; or one of the @ref peach_statuses
 */
VANTIRO_API int vantiro_peach_setPriorityI(int handle, int priority);

/**
 * @brief Sets the priority as a string: the Java method `setPriority(int, String)`.
 *
 * @param handle    the peach handle
 * @param priority  the priority (see @ref strings_in)
 * @return #VANTIRO_OK; or one of the @ref peach_statuses
 */
VANTIRO_API int vantiro_peach_setPriority(int handle, const char *priority);

/**
 * @brief Sets the project id: the Java method `setProjectId(int, int)`.
 *
 * @param handle  the peach handle
 * @param id      the id
 * @return #VANTIRO_OK; or one of the @ref peach_statuses
 */
VANTIRO_API int vantiro_peach_setProjectId(int handle, int id);

/**
 * @brief Sets the result file: the Java method `setResultFile(int, String)`.
 *
 * @param handle  the peach handle
 * @param file    the file (see @ref strings_in)
 * @return #VANTIRO_OK; or one of the @ref peach_statuses
 */
VANTIRO_API int vantiro_peach_setResultFile(int handle, const char *file);

/**
 * @brief Sets the number of jobs: the Java method `setJobs(int, int)`.
 *
 * @param handle  the peach handle
 * @param jobs    the number
 * @return #VANTIRO_OK; or one of the @ref peach_statuses
 */
VANTIRO_API int vantiro_peach_setJobs(int handle, int jobs);

/**
 * @brief Sets the allow-partial flag: the Java method `setAllowPartial(int, boolean)`.
 *
 * @param handle  the peach handle
 * @param flag    0 or 1
 * @return #VANTIRO_OK; or one of the @ref peach_statuses
 */
VANTIRO_API int vantiro_peach_setAllowPartial(int handle, unsigned char flag);

/**
 * @brief Sets the remove flag: the Java method `setRemove(int, boolean)`.
 *
 * @param handle  the peach handle
 * @param flag    0 or 1
 * @return #VANTIRO_OK; or one of the @ref peach_statuses
 */
VANTIRO_API int vantiro_peach_setRemove(int handle, unsigned char flag);

/**
 * @brief Sets the cleanup flag: the Java method `setCleanup(int, boolean)`.
 *
 * @param handle  the peach handle
 * @param flag    0 or 1
 * @return #VANTIRO_OK; or one of the @ref peach_statuses
 */
VANTIRO_API int vantiro_peach_setCleanup(int handle, unsigned char flag);

/**
 * @brief Sets the close flag: the Java method `setClose(int, boolean)`.
 *
 * @param handle  the peach handle
 * @param flag    0 or 1
 * @return #VANTIRO_OK; or one of the @ref peach_statuses
 */
VANTIRO_API int vantiro_peach_setClose(int handle, unsigned char flag);

/**@}*/

/**
 * @name Source files
 */
/**@{*/

/**
 * @brief Adds a source file: the Java method `addSourceFile(int, String)`.
 *
 * @param handle  the peach handle
 * @param file    the file (see @ref strings_in)
 * @return #VANTIRO_OK; or one of the @ref peach_statuses
 */
VANTIRO_API int vantiro_peach_addSourceFile(int handle, const char *file);

/**
 * @brief Puts an entry into the source extras: the Java method
 *        `putSourceExtras(int, String, String)`.
 *
 * @param handle  the peach handle
 * @param key     the entry's key (see @ref strings_in)
 * @param value   the entry's value
 * @return #VANTIRO_OK; or one of the @ref peach_statuses
 */
VANTIRO_API int vantiro_peach_putSourceExtras(int handle, const char *key, const char *value);

/**@}*/

/**
 * @name Executable and outputs
 */
/**@{*/

/**
 * @brief Sets the name of the executable's bundle: the Java method `setExeBundleName(int, String)`.
 *
 * @param handle  the peach handle
 * @param name    the name (see @ref strings_in)
 * @return #VANTIRO_OK; or one of the @ref peach_statuses
 */
VANTIRO_API int vantiro_peach_setExeBundleName(int handle, const char *name);

/**
 * @brief Sets the executable: the Java method `setExecutable(int, String)`.
 *
 * @param handle      the peach handle
 * @param executable  the executable (see @ref strings_in)
 * @return #VANTIRO_OK; or one of the @ref peach_statuses
 */
VANTIRO_API int vantiro_peach_setExecutable(int handle, const char *executable);

/**
 * @brief Sets the skip-digest flag of the executable's files: the Java method
 *        `setExeSkipDigest(int, boolean)`.
 *
 * @param handle  the peach handle
 * @param flag    0 or 1
 * @return #VANTIRO_OK; or one of the @ref peach_statuses
 */
VANTIRO_API int vantiro_peach_setExeSkipDigest(int handle, unsigned char flag);

/**
 * @brief Adds a file of the executable: the Java method
 *        `addExeFile(int, String, String, String, String)`.
 *
 * @param handle  the peach handle
 * @param first,second,third,fourth  describe the file, passed in this order; their meaning is the
 *          Java library's (see @ref strings_in)
 * @return #VANTIRO_OK; or one of the @ref peach_statuses
 */
VANTIRO_API int vantiro_peach_addExeFile(int handle, const char *first, const char *second,
                                         const char *third, const char *fourth);

/**
 * @brief Puts an entry into the executable's extras: the Java method
 *        `putExeExtras(int, String, String)`.
 *
 * @param handle  the peach handle
 * @param key     the entry's key (see @ref strings_in)
 * @param value   the entry's value
 * @return #VANTIRO_OK; or one of the @ref peach_statuses
 */
VANTIRO_API int vantiro_peach_putExeExtras(int handle, const char *key, const char *value);

/**
 * @brief Adds an import of the executable: the Java method `addExeImport(int, String)`.
 *
 * @param handle  the peach handle
 * @param text    the import (see @ref strings_in)
 * @return #VANTIRO_OK; or one of the @ref peach_statuses
 */
VANTIRO_API int vantiro_peach_addExeImport(int handle, const char *text);

/**
 * @brief Adds an output file: the Java method `addOutputFile(int, String)`.
 *
 * @param handle  the peach handle
 * @param file    the file (see @ref strings_in)
 * @return #VANTIRO_OK; or one of the @ref peach_statuses
 */
VANTIRO_API int vantiro_peach_addOutputFile(int handle, const char *file);

/**@}*/

/**
 * @name Data bundles
 */
/**@{*/

/**
 * @brief Starts a new data bundle: the Java method `newDataBundle(int)`.
 *
 * How the data functions that follow relate to it is the Java library's.
 *
 * @param handle  the peach handle
 * @return #VANTIRO_OK; or one of the @ref peach_statuses
 */
VANTIRO_API int vantiro_peach_newDataBundle(int handle);

/**
 * @brief Starts a new data bundle with a name: the Java method `newDataBundle(int, String)`.
 *
 * @param handle  the peach handle
 * @param name    the bundle's name (see @ref strings_in)
 * @return #VANTIRO_OK; or one of the @ref peach_statuses
 */
VANTIRO_API int vantiro_peach_newDataBundleWithName(int handle, const char *name);

/**
 * @brief Sets the skip-digest flag of the data files: the Java method
 *        `setDataSkipDigest(int, boolean)`.
 *
 * @param handle  the peach handle
 * @param flag    0 or 1
 * @return #VANTIRO_OK; or one of the @ref peach_statuses
 */
VANTIRO_API int vantiro_peach_setDataSkipDigest(int handle, unsigned char flag);

/**
 * @brief Adds a data file: the Java method `addDataFile(int, String)`.
 *
 * @param handle  the peach handle
 * @param file    the file (see @ref strings_in)
 * @return #VANTIRO_OK; or one of the @ref peach_statuses
 */
VANTIRO_API int vantiro_peach_addDataFile(int handle, const char *file);

/**
 * @brief Adds a data file with a directory: the Java method
 *        `addDataFileWithDir(int, String, String)`.
 *
 * @param handle        the peach handle
 * @param first,second  name the file and its directory, passed in this order; which is which is the
 *                      Java library's (see @ref strings_in)
 * @return #VANTIRO_OK; or one of the @ref peach_statuses
 */
VANTIRO_API int vantiro_peach_addDataFileWithDir(int handle, const char *first, const char *second);

/**
 * @brief Puts an entry into the data extras: the Java method `putDataExtras(int, String, String)`.
 *
 * @param handle  the peach handle
 * @param key     the entry's key (see @ref strings_in)
 * @param value   the entry's value
 * @return #VANTIRO_OK; or one of the @ref peach_statuses
 */
VANTIRO_API int vantiro_peach_putDataExtras(int handle, const char *key, const char *value);

/**
 * @brief Sets the data copy flag: the Java method `setDataCopy(int, boolean)`.
 *
 * @param handle  the peach handle
 * @param flag    0 or 1
 * @return #VANTIRO_OK; or one of the @ref peach_statuses
 */
VANTIRO_API int vantiro_peach_setDataCopy(int handle, unsigned char flag);

/**@}*/

/**
 * @name Job files
 */
/**@{*/

/**
 * @brief Sets the skip-digest flag of the job files: the Java method
 *        `setJobSkipDigest(int, boolean)`.
 *
 * @param handle  the peach handle
 * @param flag    0 or 1
 * @return #VANTIRO_OK; or one of the @ref peach_statuses
 */
VANTIRO_API int vantiro_peach_setJobSkipDigest(int handle, unsigned char flag);

/**
 * @brief Sets the job file names: the Java method `setJobFileNames(int, String[])`.
 *
 * @param handle  the peach handle
 * @param count   the number of strings
 * @param ...     `count` strings, all `const char *` (see @ref strings_in)
 * @return #VANTIRO_OK; or one of the @ref peach_statuses
 */
VANTIRO_API int vantiro_peach_setJobFileNames(int handle, int count, ...);

/**
 * @brief As vantiro_peach_setJobFileNames(), with the strings in an array.
 *
 * @param handle  the peach handle
 * @param count   the number of strings
 * @param list    the `count` strings (see @ref strings_in)
 * @return #VANTIRO_OK; or one of the @ref peach_statuses
 */
VANTIRO_API int vantiro_peach_setJobFileNames3(int handle, int count, const char **list);

/**
 * @brief Adds a job file, given by a list of strings: the Java method `addJobFile(int, String[])`.
 *
 * @param handle  the peach handle
 * @param count   the number of strings
 * @param ...     `count` strings, all `const char *` (see @ref strings_in)
 * @return #VANTIRO_OK; or one of the @ref peach_statuses
 */
VANTIRO_API int vantiro_peach_addJobFile(int handle, int count, ...);

/**
 * @brief As vantiro_peach_addJobFile(), with the strings in an array.
 *
 * @param handle  the peach handle
 * @param count   the number of strings
 * @param list    the `count` strings (see @ref strings_in)
 * @return #VANTIRO_OK; or one of the @ref peach_statuses
 */
VANTIRO_API int vantiro_peach_addJobFile3(int handle, int count, const char **list);

/**
 * @brief Adds a job file with a directory, given by a list of strings: the Java method
 *        `addJobFileWithDir(int, String, String[])`.
 *
 * @param handle  the peach handle
 * @param dir     the directory (see @ref strings_in)
 * @param count   the number of strings
 * @param ...     `count` strings, all `const char *` (see @ref strings_in)
 * @return #VANTIRO_OK; or one of the @ref peach_statuses
 */
VANTIRO_API int vantiro_peach_addJobFileWithDir(int handle, const char *dir, int count, ...);

/**
 * @brief As vantiro_peach_addJobFileWithDir(), with the strings in an array.
 *
 * @param handle  the peach handle
 * @param dir     the directory (see @ref strings_in)
 * @param count   the number of strings
 * @param list    the `count` strings (see @ref strings_in)
 * @return #VANTIRO_OK; or one of the @ref peach_statuses
 */
VANTIRO_API int vantiro_peach_addJobFileWithDir3(int handle, const char *dir, int count,
                                                 const char **list);

/**
 * @brief Puts an entry into the job extras: the Java method `putJobExtras(int, String, String)`.
 *
 * @param handle  the peach handle
 * @param key     the entry's key (see @ref strings_in)
 * @param value   the entry's value
 * @return #VANTIRO_OK; or one of the @ref peach_statuses
 */
VANTIRO_API int vantiro_peach_putJobExtras(int handle, const char *key, const char *value);

/**@}*/

/**
 * @name Parameter files
 */
/**@{*/

/**
 * @brief Sets the skip-digest flag of the parameter files: the Java method
 *        `setParamSkipDigest(int, boolean)`.
 *
 * @param handle  the peach handle
 * @param flag    0 or 1
 * @return #VANTIRO_OK; or one of the @ref peach_statuses
 */
VANTIRO_API int vantiro_peach_setParamSkipDigest(int handle, unsigned char flag);

/**
 * @brief Adds a parameter file: the Java method `addParamFile(int, String)`.
 *
 * @param handle  the peach handle
 * @param file    the file (see @ref strings_in)
 * @return #VANTIRO_OK; or one of the @ref peach_statuses
 */
VANTIRO_API int vantiro_peach_addParamFile(int handle, const char *file);

/**
 * @brief Adds a parameter file with a directory: the Java method
 *        `addParamFileWithDir(int, String, String)`.
 *
 * @param handle        the peach handle
 * @param first,second  name the file and its directory, passed in this order; which is which is the
 *                      Java library's (see @ref strings_in)
 * @return #VANTIRO_OK; or one of the @ref peach_statuses
 */
VANTIRO_API int vantiro_peach_addParamFileWithDir(int handle, const char *first,
                                                  const char *second);

/**
 * @brief Adds a parameter file with a target: the Java method `addParamFile(int, String, String)`.
 *
 * @param handle        the peach handle
 * @param first,second  name the file and its target, passed in this order; which is which is the
 *                      Java library's (see @ref strings_in)
 * @return #VANTIRO_OK; or one of the @ref peach_statuses
 */
VANTIRO_API int vantiro_peach_addParamFileWithTarget(int handle, const char *first,
                                                     const char *second);

/**
 * @brief Puts an entry into the parameter extras: the Java method
 *        `putParamExtras(int, String, String)`.
 *
 * @param handle  the peach handle
 * @param key     the entry's key (see @ref strings_in)
 * @param value   the entry's value
 * @return #VANTIRO_OK; or one of the @ref peach_statuses
 */
VANTIRO_API int vantiro_peach_putParamExtras(int handle, const char *key, const char *value);

/**
 * @brief Adds an external resource: the Java method `addParamExternalResource(int, String)`.
 *
 * @param handle    the peach handle
 * @param resource  the resource (see @ref strings_in)
 * @return #VANTIRO_OK; or one of the @ref peach_statuses
 */
VANTIRO_API int vantiro_peach_addParamExternalResource(int handle, const char *resource);

/**
 * @brief Sets the parameter copy flag: the Java method `setParamCopy(int, boolean)`.
 *
 * @param handle  the peach handle
 * @param flag    0 or 1
 * @return #VANTIRO_OK; or one of the @ref peach_statuses
 */
VANTIRO_API int vantiro_peach_setParamCopy(int handle, unsigned char flag);

/**@}*/

/**
 * @name Project parameters and streaming
 */
/**@{*/

/**
 * @brief Puts a project parameter: the Java method `putProjectParam(int, String, String)`.
 *
 * @param handle  the peach handle
 * @param key     the parameter's key (see @ref strings_in)
 * @param value   the parameter's value
 * @return #VANTIRO_OK; or one of the @ref peach_statuses
 */
VANTIRO_API int vantiro_peach_putProjectParam(int handle, const char *key, const char *value);

/**
 * @brief Sets the streaming flag: the Java method `setStream(int, boolean)`.
 *
 * @param handle  the peach handle
 * @param flag    0 or 1
 * @return #VANTIRO_OK; or one of the @ref peach_statuses
 */
VANTIRO_API int vantiro_peach_setStream(int handle, unsigned char flag);

/**@}*/

#ifdef __cplusplus
}
#endif

#endif
