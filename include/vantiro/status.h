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
 * The status codes that the library itself returns or describes. Every other value, positive ones
 * included, comes from the Java library, which describes it; ask vantiro_describeStatusCode().
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
 * @brief Calls the Java method `getLastError`.
 *
 * @param value  passed unchanged; its meaning is the Java library's
 * @return the Java result, unchanged; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_getLastError(int value);

/**
 * @brief Gives the text of the management object's last error: the Java method
 *        `getLastErrorMessage`.
 *
 * Before initialisation the answer is #VANTIRO_ERROR_NOT_INITIALIZED, `*size` is set to 54 and,
 * when the capacity is at least 54, `buffer` receives the 54 bytes of "No Error Message available;
 * Java is not initialized." and two NULs.
 *
 * @param buffer  receives the text (see @ref string_buffers)
 * @param size    in: the capacity of `buffer`; out: the text's length plus 1
 * @return #VANTIRO_OK; #VANTIRO_ERROR_BUFFER_TOO_SMALL; or one of the @ref call_statuses
 * @note A null Java text is delivered as the empty string.
 */
VANTIRO_API int vantiro_getLastErrorMessage(char *buffer, unsigned int *size);

#ifdef __cplusplus
}
#endif

#endif
