/**
 * @file vantiro.h
 * @brief Grid computing through a Java management library, from any program that can call plain
 *        functions. It includes all the other headers.
 *
 * A program calls one initialiser (vantiro_init(), vantiro_initFile(),
 * vantiro_initFileWithPassword() or vantiro_initWithoutFile()), which finds and loads a Java
 * runtime inside the process and creates one Java management object. From then on each
 * `vantiro_<operation>` is one call of the Java method `<operation>` of that object, and each
 * `vantiro_peach_<operation>` one call of the parallel-each object.
 *
 * There are two ways to have jobs run:
 * - one program over many inputs: a parallel-each run (vantiro/peach.h), which needs no session;
 * - jobs of any kind: a project in a session (vantiro/connection.h, vantiro/projects.h,
 *   vantiro/results.h), with bundles of files that several projects share (vantiro/bundles.h).
 *
 * Each block says what its function does with the local grid that comes with the library. Another
 * management library in its place may give an operation, an integer or a string another meaning;
 * then its own description holds, and of the blocks the C types and the rules below.
 *
 * @section call_statuses Statuses of every call
 *
 * Each function that reaches Java returns, besides what it documents itself:
 * - #VANTIRO_ERROR_NOT_INITIALIZED: no initialiser has succeeded yet, or the calling thread could
 *   not be attached to the Java machine. No Java call was made, nothing was written.
 * - #VANTIRO_ERROR_METHOD_NOT_FOUND: the installed Java library has no method of that name and
 *   these parameters. Nothing was written.
 * - #VANTIRO_ERROR_UNCAUGHT_EXCEPTION: the Java method threw. The Java machine has written the
 *   exception to standard error; it is cleared, and the next call starts afresh. Nothing was
 *   written. The local grid throws for a handle that it does not know, a null that is needed, a
 *   malformed argument, and every failure of a function that has no room for a code;
 *   vantiro_getLastErrorMessage() has the text.
 *
 * Other failures are the negative @ref grid_codes. A Java `int` result is returned unchanged, so a
 * Java result of -11, -12 or -13 cannot be told from these three. A Java `boolean` is returned as 1
 * or 0, a Java `long` as its low 32 bits, and a method without a result gives 0.
 *
 * @section handles Sessions, projects and runs
 *
 * They are known by small positive handles, which are never used twice in a process. An initialiser
 * that is called again does not end them; vantiro_unload() ends them all.
 *
 * @section string_buffers Strings that come out
 *
 * A function that returns a string takes `char *buffer` and `unsigned int *size`. `size` must
 * always point to a valid value, `*size` is the capacity of `buffer` in bytes and is read before
 * anything else. When there is a string, `*size` is set to its length in bytes plus 1; when that
 * is more than the capacity the result is #VANTIRO_ERROR_BUFFER_TOO_SMALL and `buffer` is left as
 * it was. A second call, which runs the Java method again, then wants a buffer of `*size` bytes.
 * `buffer` may be null when the capacity is 0.
 *
 * When Java returns null instead of a string, each function follows the rule that its block names:
 * - empty on null: delivered as the empty string;
 * - nothing on null: status 0, `*size` is 0, `buffer` is left as it was.
 *
 * When the Java machine cannot give a string's characters (it is out of memory), the answer is
 * status 0 with `*size` 0 and `buffer` as it was, under either rule.
 *
 * @section indexed_strings Strings out of a list
 *
 * A function that returns one string of a list takes `int *index` as well. On entry `*index` is
 * the wanted position, from 0. With status 0 and with #VANTIRO_ERROR_INDEX_OUT_OF_BOUNDS, `*index`
 * is set to the list's length, so a caller keeps its own counter:
 *
 * @code
 * int count = 1;
 * for (int i = 0; i < count; ++i) {
 *   char name[PATH_MAX];
 *   unsigned int size = sizeof name;
 *   count = i;
 *   if (vantiro_getResultFiles(project, &count, name, &size) != VANTIRO_OK) break;
 *   puts(name);
 * }
 * @endcode
 *
 * A position outside the list gives `*size` 1 and, when the capacity is not 0, an empty string.
 * #VANTIRO_ERROR_BUFFER_TOO_SMALL leaves `*index` as it was and, unlike the single strings, puts an
 * empty string into a `buffer` whose capacity is not 0. A null element is answered as under
 * "nothing on null", with `*index` set to the length. When Java cannot tell the length, the status
 * is #VANTIRO_ERROR_INDEX_OUT_OF_BOUNDS and `*index` the negative code of that failure.
 *
 * @section strings_in Strings and lists that go in
 *
 * Strings are NUL-terminated and in Java's modified UTF-8: ASCII passes unchanged, and nothing is
 * transcoded. A null pointer reaches Java as null, as a string of its own or as an element of a
 * list. Where an empty string means "none" or "as it is", null means the same; elsewhere it is
 * refused. Relative paths count from the directory where the Java machine was started.
 *
 * A list is an `int` count and that many strings: as variadic arguments, or, in the forms whose
 * name ends in `2` or `3`, as an array. The forms do the same. A count of 0 is an empty Java array;
 * a negative count, or a null array with a positive count, reaches Java as a null array. The
 * variadic arguments must be `const char *`; a bare `NULL` among them must be cast.
 *
 * The library keeps no pointer beyond the call, and the caller frees nothing but what is its own.
 *
 * @section threads Threads
 *
 * One thread initialises; then any thread may call. Each call attaches its thread to the Java
 * machine and leaves it attached: a thread that ends before the process should detach itself first,
 * through vantiro_getJavaVM(). The Java strings that a call makes are released when the thread
 * detaches, or earlier when the host frames its calls with `PushLocalFrame` and `PopLocalFrame`.
 */
#ifndef VANTIRO_H
#define VANTIRO_H

#include "vantiro/bundles.h"
#include "vantiro/connection.h"
#include "vantiro/jobs.h"
#include "vantiro/peach.h"
#include "vantiro/peach_inputs.h"
#include "vantiro/peach_settings.h"
#include "vantiro/projects.h"
#include "vantiro/results.h"
#include "vantiro/runtime.h"
#include "vantiro/status.h"
#include "vantiro/types.h"
#include "vantiro/version.h"

#endif
