/**
 * @file vantiro/bundles.h
 * @brief Creating, signing, uploading, looking up and selecting bundles.
 *
 * What the integers and strings mean, and what the Java results mean, is the Java library's.
 * For the local grid, "Arguments" in `java/README.md` names them one by one (@ref arguments).
 *
 * The functions that ask a question return 1 or 0; a negative answer is a status, not a yes.
 */
#ifndef VANTIRO_BUNDLES_H
#define VANTIRO_BUNDLES_H

#include "vantiro/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/**
 * @brief Creates a bundle: the Java method `createBundle(int, String, String, String, String,
 *        String, String, String, String, String, String[], String[])`.
 *
 * The two lists follow each other. A list with a count of 0 or less takes no string, so the other
 * one then has all of them (see @ref strings_in).
 *
 * @param handle  an integer that the Java library gave out; passed unchanged
 * @param s1,s2,s3,s4,s5,s6,s7,s8,s9  passed unchanged, in this order (see @ref strings_in)
 * @param count1  the length of the first list
 * @param count2  the length of the second list
 * @param ...     the strings of the first list, then those of the second, all `const char *`
 * @return the Java result, unchanged; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_createBundle(int handle, const char *s1, const char *s2, const char *s3,
                                     const char *s4, const char *s5, const char *s6, const char *s7,
                                     const char *s8, const char *s9, int count1, int count2, ...);

/**
 * @brief As vantiro_createBundle(), with the strings of both lists in one array.
 *
 * @param handle  an integer that the Java library gave out; passed unchanged
 * @param s1,s2,s3,s4,s5,s6,s7,s8,s9  passed unchanged, in this order (see @ref strings_in)
 * @param count1  the length of the first list
 * @param count2  the length of the second list
 * @param list    the strings of the first list, then those of the second
 * @return the Java result, unchanged; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_createBundle2(int handle, const char *s1, const char *s2, const char *s3,
                                      const char *s4, const char *s5, const char *s6,
                                      const char *s7, const char *s8, const char *s9, int count1,
                                      int count2, const char **list);

/**
 * @brief As vantiro_createBundle(), with the strings of both lists in one array.
 *
 * @param handle  an integer that the Java library gave out; passed unchanged
 * @param s1,s2,s3,s4,s5,s6,s7,s8,s9  passed unchanged, in this order (see @ref strings_in)
 * @param count1  the length of the first list
 * @param count2  the length of the second list
 * @param list    the strings of the first list, then those of the second
 * @return the Java result, unchanged; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_createBundle3(int handle, const char *s1, const char *s2, const char *s3,
                                      const char *s4, const char *s5, const char *s6,
                                      const char *s7, const char *s8, const char *s9, int count1,
                                      int count2, const char **list);

/**
 * @brief Creates a signed bundle: the Java method `createSignedBundle(int, String, String, String,
 *        String, String, String, String, String, String, String, String[], String[], String)`.
 *
 * The two lists are those of vantiro_createBundle().
 *
 * @param handle  an integer that the Java library gave out; passed unchanged
 * @param s1,s2,s3,s4,s5,s6,s7,s8,s9,s10  passed unchanged, in this order (see @ref strings_in)
 * @param s11     passed as the Java method's last parameter, after both lists
 * @param count1  the length of the first list
 * @param count2  the length of the second list
 * @param ...     the strings of the first list, then those of the second, all `const char *`
 * @return the Java result, unchanged; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_createSignedBundle(int handle, const char *s1, const char *s2,
                                           const char *s3, const char *s4, const char *s5,
                                           const char *s6, const char *s7, const char *s8,
                                           const char *s9, const char *s10, const char *s11,
                                           int count1, int count2, ...);

/**
 * @brief As vantiro_createSignedBundle(), with the strings of both lists in one array.
 *
 * @param handle  an integer that the Java library gave out; passed unchanged
 * @param s1,s2,s3,s4,s5,s6,s7,s8,s9,s10  passed unchanged, in this order (see @ref strings_in)
 * @param s11     passed as the Java method's last parameter, after both lists
 * @param count1  the length of the first list
 * @param count2  the length of the second list
 * @param list    the strings of the first list, then those of the second
 * @return the Java result, unchanged; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_createSignedBundle2(int handle, const char *s1, const char *s2,
                                            const char *s3, const char *s4, const char *s5,
                                            const char *s6, const char *s7, const char *s8,
                                            const char *s9, const char *s10, const char *s11,
                                            int count1, int count2, const char **list);

/**
 * @brief As vantiro_createSignedBundle(), with the strings of both lists in one array.
 *
 * @param handle  an integer that the Java library gave out; passed unchanged
 * @param s1,s2,s3,s4,s5,s6,s7,s8,s9,s10  passed unchanged, in this order (see @ref strings_in)
 * @param s11     passed as the Java method's last parameter, after both lists
 * @param count1  the length of the first list
 * @param count2  the length of the second list
 * @param list    the strings of the first list, then those of the second
 * @return the Java result, unchanged; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_createSignedBundle3(int handle, const char *s1, const char *s2,
                                            const char *s3, const char *s4, const char *s5,
                                            const char *s6, const char *s7, const char *s8,
                                            const char *s9, const char *s10, const char *s11,
                                            int count1, int count2, const char **list);

/**
 * @brief Signs a Java archive: the Java method `signJar(String, String)`.
 *
 * @param first,second  passed unchanged, in this order (see @ref strings_in)
 * @return the Java result, unchanged; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_signJar(const char *first, const char *second);

/**
 * @brief Uploads a bundle: the Java method `uploadBundle(int)`.
 *
 * @param handle  an integer that the Java library gave out; passed unchanged
 * @return the Java result, unchanged; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_uploadBundle(int handle);

/**
 * @brief Uploads a bundle with a name: the Java method `uploadBundle(int, String)`.
 *
 * @param handle  an integer that the Java library gave out; passed unchanged
 * @param text    passed unchanged; its meaning is the Java library's (see @ref strings_in)
 * @return the Java result, unchanged; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_uploadBundleWithName(int handle, const char *text);

/**
 * @brief Approves uploaded bundles: the Java method `approveUploadedBundles(int)`.
 *
 * @param handle  an integer that the Java library gave out; passed unchanged
 * @return the Java result, unchanged; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_approveUploadedBundles(int handle);

/**
 * @brief Tells whether a bundle exists: the Java method `bundleExists(String)`.
 *
 * @param text  passed unchanged; its meaning is the Java library's (see @ref strings_in)
 * @return 1 or 0; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_bundleExists(const char *text);

/**
 * @brief Tells whether a bundle exists: the Java method `bundleExists(String, String)`.
 *
 * @param first,second  passed unchanged, in this order (see @ref strings_in)
 * @return 1 or 0; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_bundleWithPrefixExists(const char *first, const char *second);

/**
 * @brief Tells whether a version of a bundle exists: the Java method
 *        `bundleVersionExists(String, String)`.
 *
 * @param first,second  passed unchanged, in this order (see @ref strings_in)
 * @return 1 or 0; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_bundleVersionExists(const char *first, const char *second);

/**
 * @brief Selects a bundle for use: the Java method `useBundle(int, String)`.
 *
 * @param handle  an integer that the Java library gave out; passed unchanged
 * @param text    passed unchanged; its meaning is the Java library's (see @ref strings_in)
 * @return the Java result, unchanged; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_useBundle(int handle, const char *text);

/**
 * @brief Selects a bundle for use: the Java method `useBundle(int, String, String)`.
 *
 * @param handle        an integer that the Java library gave out; passed unchanged
 * @param first,second  passed unchanged, in this order (see @ref strings_in)
 * @return the Java result, unchanged; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_useBundleWithPrefix(int handle, const char *first, const char *second);

/**
 * @brief Gives a bundle id: the Java method `getBundleId(int)`.
 *
 * @param handle  an integer that the Java library gave out; passed unchanged
 * @return the Java result, unchanged; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_getBundleId(int handle);

/**
 * @brief Sets a bundle id: the Java method `setBundleId(int, int)`.
 *
 * @param handle  an integer that the Java library gave out; passed unchanged
 * @param value   the id; passed unchanged
 * @return the Java result, unchanged; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_setBundleId(int handle, int value);

/**
 * @brief Gives the name of the bundle that was created last: the Java method
 *        `getLastCreatedBundleName(int)`.
 *
 * @param handle  an integer that the Java library gave out; passed unchanged
 * @param buffer  receives the name (see @ref string_buffers)
 * @param size    in: the capacity of `buffer`; out: the length plus 1
 * @return #VANTIRO_OK; #VANTIRO_ERROR_BUFFER_TOO_SMALL; or one of the @ref call_statuses
 * @note Nothing on null.
 */
VANTIRO_API int vantiro_getLastCreatedBundleName(int handle, char *buffer, unsigned int *size);

#ifdef __cplusplus
}
#endif

#endif
