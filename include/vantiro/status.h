/**
 * @file vantiro/status.h
 * @brief Status codes, their texts, and the last error of the Java side.
 */
#ifndef VANTIRO_STATUS_H
#define VANTIRO_STATUS_H

#include "vantiro/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/**
 * @defgroup errors Finding out what failed
 * @brief Status codes, their texts, and what exactly went wrong.
 *
 * @code
 * static void explain(const char *what, int status) {
 *   char text[4096] = "";
 *   unsigned int size = sizeof text;
 *   vantiro_describeStatusCode(status, text, &size);
 *   fprintf(stderr, "%s: %s (%d)\n", what, text, status);   // at least one job failed (-5)
 *   size = sizeof text;
 *   if (vantiro_getLastErrorMessage(text, &size) == 0 && size > 1) fprintf(stderr, "%s\n", text);
 * }
 * @endcode
 *
 * @section grid_codes Codes of the grid
 *
 * | Code | Text | For example |
 * |---|---|---|
 * | -1 | reading or writing failed | the disk is full, a directory is not the user's own |
 * | -2 | the settings are missing or wrong | an unknown key, a `temp.dir` that does not exist |
 * | -3 | the password is missing or wrong | the settings file has a `grid.password` |
 * | -4 | the operation does not fit the present state | waiting for a project that is not started |
 * | -5 | at least one job failed | a job's exit status is not 0 |
 * | -6 | there is no such bundle | it is not approved, or for another platform |
 * | -7 | the archive is damaged, altered or unsafe | a signed bundle that was changed |
 * | -8 | a file or directory is missing | an input that cannot be read |
 * | -9 | the project was stopped | another thread called vantiro_stopProject() |
 * | -10 | the value is not one of the known ones | a log level, a digest |
 * @{
 */

/**
 * The status codes that the library itself returns or describes. Every other value, positive ones
 * included, comes from the Java library; those of the local grid are the @ref grid_codes.
 */
enum vantiro_status {
  /** "OK" */
  VANTIRO_OK = 0,
  /** "Java is not initialized" */
  VANTIRO_ERROR_NOT_INITIALIZED = -11,
  /** "Java method could not be found" */
  VANTIRO_ERROR_METHOD_NOT_FOUND = -12,
  /** "Uncaught exception thrown from Java" */
  VANTIRO_ERROR_UNCAUGHT_EXCEPTION = -13,
  /** "Unable to find the constructor of Management Interface" */
  VANTIRO_ERROR_CONSTRUCTOR_MISSING = -14,
  /** "Unable to find the initializer of Management Interface" */
  VANTIRO_ERROR_INITIALIZER_MISSING = -15,
  /** "Unable to initialize Management Interface" */
  VANTIRO_ERROR_INITIALIZATION = -16,
  /** "Unknown error"; described only */
  VANTIRO_ERROR_UNKNOWN = -17,
  /** "Unable to find Java"; described only */
  VANTIRO_ERROR_JAVA_NOT_FOUND = -18,
  /** "Unable to find Java version"; described only */
  VANTIRO_ERROR_JAVA_VERSION = -19,
  /** "Unable to find Java keypath"; described only */
  VANTIRO_ERROR_JAVA_KEYPATH = -20,
  /** "Unable to find Java runtime library location"; described only */
  VANTIRO_ERROR_RUNTIME_LOCATION = -21,
  /** "Unable to find Java runtime library" */
  VANTIRO_ERROR_RUNTIME_NOT_FOUND = -22,
  /** "String buffer is too small." */
  VANTIRO_ERROR_BUFFER_TOO_SMALL = -23,
  /** "File index is out of bounds." */
  VANTIRO_ERROR_INDEX_OUT_OF_BOUNDS = -24,
  /** "VARIANT type is invalid, BSTR expected."; described only */
  VANTIRO_ERROR_INVALID_VARIANT = -25
};

/**
 * @brief Gives the text of a status code.
 *
 * The texts of 0 and of -11 to -25 are the library's own: for them the function works at any time,
 * before any initialiser too. Every other code is put to the Java method `describeStatusCode`.
 *
 * @param code    the status code to describe
 * @param buffer  receives the text (see @ref string_buffers)
 * @param size    in: the capacity of `buffer`; out: the text's length plus 1
 * @return #VANTIRO_OK; #VANTIRO_ERROR_BUFFER_TOO_SMALL; for codes of the Java library also the
 *         @ref call_statuses
 * @note A null Java text is delivered as the empty string.
 */
VANTIRO_API int vantiro_describeStatusCode(int code, char *buffer, unsigned int *size);

/**
 * @brief Gives the code of the last failure: the Java method `getLastError`.
 *
 * Failures are those of all threads, and of jobs and downloads in the background; calls that
 * succeed leave the last one as it is.
 *
 * @param reset  0 leaves it; any other value forgets code and text after answering
 * @return the code, negative, -13 for an exception; 0 when nothing failed; or one of the
 *         @ref call_statuses
 */
VANTIRO_API int vantiro_getLastError(int reset);

/**
 * @brief Gives the text of the last failure: the Java method `getLastErrorMessage`.
 *
 * It names what exactly failed: the file, the setting, the jobs and what they wrote. It is that of
 * vantiro_getLastError(); ask the two right after a failure. A run's own failure, whatever other
 * threads do, is told by vantiro_peach_getLastErrorMessage().
 *
 * Before initialisation the answer is #VANTIRO_ERROR_NOT_INITIALIZED, `*size` is set to 54 and,
 * when the capacity is at least 54, `buffer` receives the 54 bytes of "No Error Message available;
 * Java is not initialized." and two NULs.
 *
 * @param buffer  receives the text (see @ref string_buffers), which may have several thousand
 *                characters
 * @param size    in: the capacity of `buffer`; out: the length plus 1
 * @return #VANTIRO_OK; #VANTIRO_ERROR_BUFFER_TOO_SMALL; or one of the @ref call_statuses
 * @note A null Java text, which means that nothing failed, is delivered as the empty string.
 */
VANTIRO_API int vantiro_getLastErrorMessage(char *buffer, unsigned int *size);

/** @} */

#ifdef __cplusplus
}
#endif

#endif
