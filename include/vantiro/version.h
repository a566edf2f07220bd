/**
 * @file vantiro/version.h
 * @brief The version of the library whose header this is.
 */
#ifndef VANTIRO_VERSION_H
#define VANTIRO_VERSION_H

/** Changes when a program must be rebuilt; it is also the number in the SONAME. */
#define VANTIRO_VERSION_MAJOR 1
/** Changes when functions are added. */
#define VANTIRO_VERSION_MINOR 0
/** Changes with every other release. */
#define VANTIRO_VERSION_PATCH 0

/** The version as one number for comparisons: 1.2.3 is 10203. */
#define VANTIRO_VERSION \
  (VANTIRO_VERSION_MAJOR * 10000 + VANTIRO_VERSION_MINOR * 100 + VANTIRO_VERSION_PATCH)

#endif
