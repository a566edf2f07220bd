/*
 * The calls that are measured, as a careful programmer writes them in JNI without the library:
 * attached on every call, looked up on every call, and every exception seen to.
 */
#ifndef VANTIRO_BENCH_BY_HAND_H
#define VANTIRO_BENCH_BY_HAND_H

#include <jni.h>

#ifdef __cplusplus
extern "C" {
#endif

int by_hand_open(void);
int by_hand_getLastError(int value);
int by_hand_setStreamResults(int handle, unsigned char flag);
int by_hand_actionWait(int milliseconds);
int by_hand_isFailed(int handle);
int by_hand_getUsedTime(int handle);
int by_hand_setLogLevel(const char *level);
int by_hand_setProjectParams(int project, int count, const char **list);
int by_hand_createBundle(int handle, const char **nine, int count1, int count2, const char **list);
int by_hand_getUserLogin(char *buffer, unsigned int *size);
int by_hand_getStatisticsString(int handle, char *buffer, unsigned int *size);
int by_hand_getResultFiles(int handle, int *index, char *buffer, unsigned int *size);
int by_hand_getJavaSystemProperty(const char *key, char *buffer, unsigned int *size);
int by_hand_peach_setName(int handle, const char *text);
int by_hand_peach_addExeFile(int handle, const char *s1, const char *s2, const char *s3,
                             const char *s4);
void by_hand_callback(JNIEnv *jni, jobject object, jstring text);

#ifdef __cplusplus
}
#endif

#endif
