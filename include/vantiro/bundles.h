/**
 * @file vantiro/bundles.h
 * @brief Bundles: named and versioned archives of files that the jobs of many projects share.
 */
#ifndef VANTIRO_BUNDLES_H
#define VANTIRO_BUNDLES_H

#include "vantiro/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/**
 * @defgroup bundles Bundles
 * @brief A program and its files, packed once, stored in the grid's home and used by many projects.
 *
 * A bundle is created from files of this machine, uploaded to the store in the grid's home, and
 * approved; from then on any project there can use it, also of other programs and later ones. Jobs
 * find its files unpacked in their working directories.
 *
 * @code
 * int id = vantiro_createBundle(project, "solver", "1.2", "", "", "A solver", "made", "build",
 *                               "bin/solver", "", 2, 0, "bin/solver", "share/table");
 * vantiro_uploadBundle(project);            // made/solver@1.2.jar, into the store
 * vantiro_approveUploadedBundles(project);
 * vantiro_useBundle(project, "solver");     // any project, from now on
 * vantiro_createProjectJobs(project, 1, "bin/solver < /data/in > out");
 * @endcode
 *
 * The functions that ask a question return 1 or 0; a negative answer is a status, not a yes.
 * @{
 */

/**
 * @brief Packs files into the archive of a bundle: the Java method `createBundle(int, String,
 *        String, String, String, String, String, String, String, String, String[], String[])`.
 *
 * The archive is `prefix+name@version+platform.jar` in `directory`, without the parts that are
 * empty; one that is there is replaced. The project remembers it for vantiro_uploadBundle() alone.
 * Name, version, prefix and imports are made of letters, digits, `.`, `_` and `-`, the first being
 * a letter or digit; of the strings between version and vendor all but `directory` and `base` may
 * be empty or null.
 *
 * The two lists follow each other. A list with a count of 0 or less takes no string, so the other
 * one then has all of them (see @ref strings_in); neither may be null in Java, so no count is
 * negative.
 *
 * @param project       the handle of any project
 * @param name          the bundle's name
 * @param version       its version; parts between `.`, `-` and `_` are compared as numbers where
 *                      they are numbers
 * @param prefix        what tells it from bundles of other makers: `prefix.name` is its full name
 * @param platform      what it is for: `linux`, `linux-i386`, `linux-amd64`, ...; empty or `any`:
 *                      for all. Each platform of a version is an archive of its own
 * @param description   a line about it
 * @param directory     where the archive is written, made when it is missing
 * @param base          the directory that `files` are named from
 * @param executable    the one of `files` that jobs run, if any; it is made executable for them
 * @param vendor        a line about who made it
 * @param file_count    the length of the first list
 * @param import_count  the length of the second list
 * @param ...           the files, relative to `base`, which keep their directories; then the names
 *                      of other bundles whose files jobs are to find as well; all `const char *`
 * @return the bundle's id, positive, which follows from prefix, name and version alone; -8 when a
 *         file cannot be read, or `executable` is not among them; -1 when the archive cannot be
 *         written; or one of the @ref call_statuses, #VANTIRO_ERROR_UNCAUGHT_EXCEPTION for a name,
 *         version or platform that cannot be
 */
VANTIRO_API int vantiro_createBundle(int project, const char *name, const char *version,
                                     const char *prefix, const char *platform,
                                     const char *description, const char *directory,
                                     const char *base, const char *executable, const char *vendor,
                                     int file_count, int import_count, ...);

/**
 * @brief As vantiro_createBundle(), with the strings of both lists in one array.
 *
 * @param project       the handle of any project
 * @param name,version,prefix,platform,description,directory,base,executable,vendor  as there
 * @param file_count    the length of the first list
 * @param import_count  the length of the second list
 * @param list          the files, then the names of the bundles that are imported
 * @return as vantiro_createBundle()
 */
VANTIRO_API int vantiro_createBundle2(int project, const char *name, const char *version,
                                      const char *prefix, const char *platform,
                                      const char *description, const char *directory,
                                      const char *base, const char *executable, const char *vendor,
                                      int file_count, int import_count, const char **list);

/**
 * @brief As vantiro_createBundle(), with the strings of both lists in one array.
 *
 * @param project       the handle of any project
 * @param name,version,prefix,platform,description,directory,base,executable,vendor  as there
 * @param file_count    the length of the first list
 * @param import_count  the length of the second list
 * @param list          the files, then the names of the bundles that are imported
 * @return as vantiro_createBundle()
 */
VANTIRO_API int vantiro_createBundle3(int project, const char *name, const char *version,
                                      const char *prefix, const char *platform,
                                      const char *description, const char *directory,
                                      const char *base, const char *executable, const char *vendor,
                                      int file_count, int import_count, const char **list);

/**
 * @brief Packs files into the archive of a bundle with a digest of each: the Java method
 *        `createSignedBundle(int, String, String, String, String, String, String, String, String,
 *        String, String, String[], String[], String)`.
 *
 * As vantiro_createBundle(). The store refuses such an archive when a file in it was altered: a
 * guard against damage, not against forgers, since the signer is a name alone.
 *
 * @param project       the handle of any project
 * @param name,version,prefix,platform,description,directory,base,executable,vendor  as for
 *                      vantiro_createBundle()
 * @param signer        the signer's name, neither null nor empty
 * @param algorithm     the digest, such as `SHA-256`; passed as the Java method's last parameter,
 *                      after both lists
 * @param file_count    the length of the first list
 * @param import_count  the length of the second list
 * @param ...           the files, then the names of the bundles that are imported, all
 *                      `const char *`
 * @return as vantiro_createBundle(); -10 for an algorithm that Java does not have
 */
VANTIRO_API int vantiro_createSignedBundle(int project, const char *name, const char *version,
                                           const char *prefix, const char *platform,
                                           const char *description, const char *directory,
                                           const char *base, const char *executable,
                                           const char *vendor, const char *signer,
                                           const char *algorithm, int file_count, int import_count,
                                           ...);

/**
 * @brief As vantiro_createSignedBundle(), with the strings of both lists in one array.
 *
 * @param project       the handle of any project
 * @param name,version,prefix,platform,description,directory,base,executable,vendor  as for
 *                      vantiro_createBundle()
 * @param signer        the signer's name, neither null nor empty
 * @param algorithm     the digest, such as `SHA-256`
 * @param file_count    the length of the first list
 * @param import_count  the length of the second list
 * @param list          the files, then the names of the bundles that are imported
 * @return as vantiro_createSignedBundle()
 */
VANTIRO_API int vantiro_createSignedBundle2(int project, const char *name, const char *version,
                                            const char *prefix, const char *platform,
                                            const char *description, const char *directory,
                                            const char *base, const char *executable,
                                            const char *vendor, const char *signer,
                                            const char *algorithm, int file_count, int import_count,
                                            const char **list);

/**
 * @brief As vantiro_createSignedBundle(), with the strings of both lists in one array.
 *
 * @param project       the handle of any project
 * @param name,version,prefix,platform,description,directory,base,executable,vendor  as for
 *                      vantiro_createBundle()
 * @param signer        the signer's name, neither null nor empty
 * @param algorithm     the digest, such as `SHA-256`
 * @param file_count    the length of the first list
 * @param import_count  the length of the second list
 * @param list          the files, then the names of the bundles that are imported
 * @return as vantiro_createSignedBundle()
 */
VANTIRO_API int vantiro_createSignedBundle3(int project, const char *name, const char *version,
                                            const char *prefix, const char *platform,
                                            const char *description, const char *directory,
                                            const char *base, const char *executable,
                                            const char *vendor, const char *signer,
                                            const char *algorithm, int file_count, int import_count,
                                            const char **list);

/**
 * @brief Adds a signer's name and the digest (SHA-256) of each file to an archive: the Java method
 *        `signJar(String, String)`.
 *
 * @param archive  the path of a zip or jar archive, which is replaced
 * @param signer   the signer's name, neither null nor empty
 * @return 0; -8 when there is no such archive; -7 when it is damaged; -1 when it cannot be written;
 *         or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_signJar(const char *archive, const char *signer);

/**
 * @brief Copies the bundle that the project created last into the store: the Java method
 *        `uploadBundle(int)`.
 *
 * It can be used after vantiro_approveUploadedBundles().
 *
 * @param project  the project's handle
 * @return 0; -4 when the project created none; -7 when a signed archive was altered, or the archive
 *         is damaged; -8 when it is gone; -1 when the store cannot be written; or one of the
 *         @ref call_statuses
 */
VANTIRO_API int vantiro_uploadBundle(int project);

/**
 * @brief Copies the archive of a bundle into the store: the Java method
 *        `uploadBundle(int, String)`.
 *
 * It can be used after vantiro_approveUploadedBundles().
 *
 * @param project  the handle of any project
 * @param archive  the path of an archive that vantiro_createBundle() made
 * @return 0; -7 when it is damaged, altered or no bundle; -8 when there is none; -1 when the store
 *         cannot be written; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_uploadBundleWithName(int project, const char *archive);

/**
 * @brief Lets all uploaded bundles be used: the Java method `approveUploadedBundles(int)`.
 *
 * All means those that any program uploaded to this grid's home. An approved bundle of the same
 * prefix, name, version and platform is replaced.
 *
 * @param project  the handle of any project
 * @return how many were approved; -7 when there were damaged or altered ones alone. These are moved
 *         to `bundles/damaged/` in the grid's home, and the log tells of them; or one of the
 *         @ref call_statuses
 */
VANTIRO_API int vantiro_approveUploadedBundles(int project);

/**
 * @brief Tells whether there is an approved bundle of a name: the Java method
 *        `bundleExists(String)`.
 *
 * @param name  the name, with its prefix (`prefix.name`) or without; not null
 * @return 1 or 0; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_bundleExists(const char *name);

/**
 * @brief Tells whether there is an approved bundle of a prefix and name: the Java method
 *        `bundleExists(String, String)`.
 *
 * @param prefix  the prefix; empty or null: a bundle without one
 * @param name    the name
 * @return 1 or 0; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_bundleWithPrefixExists(const char *prefix, const char *name);

/**
 * @brief Tells whether there is an approved bundle of a name and version: the Java method
 *        `bundleVersionExists(String, String)`.
 *
 * @param name     the name, with its prefix or without; not null
 * @param version  the version, letter by letter
 * @return 1 or 0; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_bundleVersionExists(const char *name, const char *version);

/**
 * @brief Has a project's jobs find the files of a bundle: the Java method
 *        `useBundle(int, String)`.
 *
 * It is the newest approved version that fits this machine, and of several platforms the most
 * special one (`linux-amd64` before `linux` before `any`); its imports come with it, and its own
 * files are put over theirs. It holds for each job that starts from now on, in the place of the
 * bundle chosen before.
 *
 * @param project  the project's handle
 * @param name     the name, with its prefix (`prefix.name`) or without; not null
 * @return 0; -6 when no approved bundle of that name, or of an import's, fits this machine; or one
 *         of the @ref call_statuses
 */
VANTIRO_API int vantiro_useBundle(int project, const char *name);

/**
 * @brief As vantiro_useBundle(), for a bundle of a prefix: the Java method
 *        `useBundle(int, String, String)`.
 *
 * @param project  the project's handle
 * @param prefix   the prefix; empty or null: a bundle without one
 * @param name     the name, not null
 * @return as vantiro_useBundle()
 */
VANTIRO_API int vantiro_useBundleWithPrefix(int project, const char *prefix, const char *name);

/**
 * @brief Gives the id of the bundle that a project uses: the Java method `getBundleId(int)`.
 *
 * @param project  the project's handle
 * @return the id, positive, or 0 when it uses none; or one of the @ref call_statuses
 */
VANTIRO_API int vantiro_getBundleId(int project);

/**
 * @brief As vantiro_useBundle(), for the bundle of an id: the Java method `setBundleId(int, int)`.
 *
 * @param project  the project's handle
 * @param id       what vantiro_createBundle() returned, here or on another machine: a certain
 *                 version of a certain bundle
 * @return 0; -6 when no approved bundle has that id and fits this machine; or one of the
 *         @ref call_statuses
 */
VANTIRO_API int vantiro_setBundleId(int project, int id);

/**
 * @brief Gives the full name of the bundle that the project created last: the Java method
 *        `getLastCreatedBundleName(int)`.
 *
 * @param project  the project's handle
 * @param buffer   receives the name, with its prefix: `prefix.name` (see @ref string_buffers)
 * @param size     in: the capacity of `buffer`; out: the length plus 1
 * @return #VANTIRO_OK; #VANTIRO_ERROR_BUFFER_TOO_SMALL; or one of the @ref call_statuses
 * @note Nothing on null, which means that the project created none.
 */
VANTIRO_API int vantiro_getLastCreatedBundleName(int project, char *buffer, unsigned int *size);

/** @} */

#ifdef __cplusplus
}
#endif

#endif
