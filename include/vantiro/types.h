/**
 * @file vantiro/types.h
 * @brief Linkage, and the few types of the Java Native Interface that the library hands out.
 *
 * No JDK is needed. The types below are the very types of `<jni.h>`, which may be included before
 * or after this header; with it they can be used, without it they can be passed on.
 */
#ifndef VANTIRO_TYPES_H
#define VANTIRO_TYPES_H

#if defined(__GNUC__)
#define VANTIRO_API __attribute__((visibility("default")))
#else
#define VANTIRO_API
#endif

#ifdef __cplusplus
struct JavaVM_;
struct JNIEnv_;
class _jobject;
class _jclass;
class _jstring;
/** `JavaVM` of `<jni.h>`. */
typedef struct JavaVM_ vantiro_JavaVM;
/** `JNIEnv` of `<jni.h>`. */
typedef struct JNIEnv_ vantiro_JNIEnv;
/** `jobject` of `<jni.h>`. */
typedef _jobject *vantiro_jobject;
/** `jclass` of `<jni.h>`. */
typedef _jclass *vantiro_jclass;
/** `jstring` of `<jni.h>`. */
typedef _jstring *vantiro_jstring;
#else
struct JNIInvokeInterface_;
struct JNINativeInterface_;
struct _jobject;
/** `JavaVM` of `<jni.h>`. */
typedef const struct JNIInvokeInterface_ *vantiro_JavaVM;
/** `JNIEnv` of `<jni.h>`. */
typedef const struct JNINativeInterface_ *vantiro_JNIEnv;
/** `jobject` of `<jni.h>`. */
typedef struct _jobject *vantiro_jobject;
/** `jclass` of `<jni.h>`. */
typedef vantiro_jobject vantiro_jclass;
/** `jstring` of `<jni.h>`. */
typedef vantiro_jobject vantiro_jstring;
#endif

#endif
