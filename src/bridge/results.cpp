#include "bridge/results.h"

#include "bridge/characters.h"

namespace vantiro {

int NothingOnNull::deliver(JNIEnv *jni, jobject result) const {
  const Characters text(jni, result);
  return text ? put(text.get(), text.size()) : put_nothing();
}

int EmptyOnNull::deliver(JNIEnv *jni, jobject result) const {
  return result ? NothingOnNull::deliver(jni, result) : put("", 1);
}

}  // namespace vantiro
