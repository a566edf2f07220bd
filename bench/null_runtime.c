/* A Java runtime whose functions do next to nothing, so that a call costs what its caller adds. */
#include <jni.h>
#include <stddef.h>
#include <string.h>

static char something;
static char short_text[11];
static char long_text[10001];
static struct JNINativeInterface_ functions;
static struct JNIInvokeInterface_ machine_functions;
static JNIEnv environment = &functions;
static JavaVM machine = &machine_functions;

#define ANY ((void *)&something)
#define IGNORE(value) ((void)(value))

static jclass JNICALL find_class(JNIEnv *e, const char *name) {
  IGNORE(e), IGNORE(name);
  return ANY;
}
static jobject JNICALL same(JNIEnv *e, jobject object) {
  IGNORE(e);
  return object;
}
static void JNICALL forget(JNIEnv *e, jobject object) { IGNORE(e), IGNORE(object); }
/* A method is known by its name. */
static jmethodID JNICALL get_method(JNIEnv *e, jclass type, const char *name, const char *sig) {
  IGNORE(e), IGNORE(type), IGNORE(sig);
  return (jmethodID)name;
}
static jobject JNICALL call_object(JNIEnv *e, jobject object, jmethodID method, ...) {
  IGNORE(e), IGNORE(object);
  return (jobject)(((const char *)method)[3] == 'S' ? long_text : short_text);
}
static jint JNICALL call_int(JNIEnv *e, jobject object, jmethodID method, ...) {
  IGNORE(e), IGNORE(object), IGNORE(method);
  return 1;
}
static jboolean JNICALL call_boolean(JNIEnv *e, jobject object, jmethodID method, ...) {
  IGNORE(e), IGNORE(object), IGNORE(method);
  return JNI_TRUE;
}
static jlong JNICALL call_long(JNIEnv *e, jobject object, jmethodID method, ...) {
  IGNORE(e), IGNORE(object), IGNORE(method);
  return 1;
}
static void JNICALL call_void(JNIEnv *e, jobject object, jmethodID method, ...) {
  IGNORE(e), IGNORE(object), IGNORE(method);
}
static jthrowable JNICALL exception(JNIEnv *e) {
  IGNORE(e);
  return NULL;
}
static void JNICALL nothing(JNIEnv *e) { IGNORE(e); }
static jstring JNICALL new_string(JNIEnv *e, const char *text) {
  IGNORE(e), IGNORE(text);
  return ANY;
}
static const char *JNICALL characters(JNIEnv *e, jstring text, jboolean *copied) {
  IGNORE(e), IGNORE(copied);
  return (const char *)text;
}
static void JNICALL release(JNIEnv *e, jstring text, const char *chars) {
  IGNORE(e), IGNORE(text), IGNORE(chars);
}
static jobjectArray JNICALL new_array(JNIEnv *e, jsize size, jclass type, jobject initial) {
  IGNORE(e), IGNORE(size), IGNORE(type), IGNORE(initial);
  return ANY;
}
static void JNICALL set_element(JNIEnv *e, jobjectArray array, jsize index, jobject value) {
  IGNORE(e), IGNORE(array), IGNORE(index), IGNORE(value);
}
static jint JNICALL push_frame(JNIEnv *e, jint capacity) {
  IGNORE(e), IGNORE(capacity);
  return JNI_OK;
}
static jint JNICALL register_natives(JNIEnv *e, jclass type, const JNINativeMethod *list,
                                     jint count) {
  IGNORE(e), IGNORE(type), IGNORE(list), IGNORE(count);
  return JNI_OK;
}
static jint JNICALL attach(JavaVM *vm, void **place, void *arguments) {
  IGNORE(vm), IGNORE(arguments);
  *place = &environment;
  return JNI_OK;
}

static struct JNINativeInterface_ functions = {
    .FindClass = find_class,
    .PushLocalFrame = push_frame,
    .PopLocalFrame = same,
    .NewGlobalRef = same,
    .NewLocalRef = same,
    .DeleteLocalRef = forget,
    .GetMethodID = get_method,
    .GetStaticMethodID = get_method,
    .NewObject = call_object,
    .CallObjectMethod = call_object,
    .CallIntMethod = call_int,
    .CallBooleanMethod = call_boolean,
    .CallLongMethod = call_long,
    .CallVoidMethod = call_void,
    .CallStaticObjectMethod = call_object,
    .ExceptionOccurred = exception,
    .ExceptionDescribe = nothing,
    .ExceptionClear = nothing,
    .NewStringUTF = new_string,
    .GetStringUTFChars = characters,
    .ReleaseStringUTFChars = release,
    .NewObjectArray = new_array,
    .SetObjectArrayElement = set_element,
    .RegisterNatives = register_natives,
};
static struct JNIInvokeInterface_ machine_functions = {.AttachCurrentThread = attach,
                                                       .AttachCurrentThreadAsDaemon = attach};

JNIEXPORT jint JNICALL JNI_GetDefaultJavaVMInitArgs(void *arguments) {
  IGNORE(arguments);
  return JNI_OK;
}

JNIEXPORT jint JNICALL JNI_GetCreatedJavaVMs(JavaVM **place, jsize size, jsize *count) {
  IGNORE(place), IGNORE(size);
  *count = 0;
  return JNI_OK;
}

JNIEXPORT jint JNICALL JNI_CreateJavaVM(JavaVM **place, void **env, void *arguments) {
  IGNORE(arguments);
  memset(short_text, 'x', sizeof short_text - 1);
  memset(long_text, 'x', sizeof long_text - 1);
  *place = &machine;
  *env = &environment;
  return JNI_OK;
}
