#include "bridge/indexed_string.h"

#include "bridge/call.h"
#include "bridge/characters.h"

namespace vantiro::management {
namespace {

int deliver_element(JNIEnv *jni, jobject element, CallerBuffer out) {
  const Characters text(jni, element);
  if (!text) return out.put_nothing();
  const int status = out.put(text.get(), text.size());
  if (status != VANTIRO_OK) out.blank();
  return status;
}

}  // namespace

int indexed_string(const char *count_method, const char *element_method, int handle, int *index,
                   CallerBuffer out) {
  const Target target = management_object();
  JNIEnv *const jni = enter(target);
  if (!jni) return VANTIRO_ERROR_NOT_INITIALIZED;

  const jmethodID counter = jni->GetMethodID(target.type, count_method, descriptor<Int, jint>());
  const jmethodID getter =
      jni->GetMethodID(target.type, element_method, descriptor<String, jint, jint>());
  if (!counter || !getter) return VANTIRO_ERROR_METHOD_NOT_FOUND;
  jni->ExceptionClear();

  const jint count = Int::call(jni, target.object, counter, handle);
  if (threw(jni)) return VANTIRO_ERROR_UNCAUGHT_EXCEPTION;
  const int position = *index;
  if (position < 0 || position >= count) {
    out.blank();
    out.announce(1);
    *index = count;
    return VANTIRO_ERROR_INDEX_OUT_OF_BOUNDS;
  }

  const jobject element = String::call(jni, target.object, getter, handle, position);
  if (threw(jni)) return VANTIRO_ERROR_UNCAUGHT_EXCEPTION;
  const int status = deliver_element(jni, element, out);
  if (element) jni->DeleteLocalRef(element);
  if (status == VANTIRO_OK) *index = count;
  return status;
}

}  // namespace vantiro::management
