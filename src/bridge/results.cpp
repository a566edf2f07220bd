#include "bridge/results.h"

#include "bridge/characters.h"

namespace vantiro {

int String::deliver(JNIEnv *jni, jobject result) const {
  if (!result && rule == empty_on_null) return out.put("", 1);
  const Characters text(jni, result);
  return text ? out.put(text.get(), text.size()) : out.put_nothing();
}

}  // namespace vantiro
