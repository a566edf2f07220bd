#include "bridge/caller_buffer.h"

#include <cstring>

#include "vantiro/status.h"

namespace vantiro {

int CallerBuffer::put(const char *text, unsigned int bytes) const {
  announce(bytes);
  if (capacity_ < bytes) return VANTIRO_ERROR_BUFFER_TOO_SMALL;
  std::memcpy(buffer_, text, bytes);
  return VANTIRO_OK;
}

int CallerBuffer::put_nothing() const {
  announce(0);
  return VANTIRO_OK;
}

void CallerBuffer::blank() const {
  if (capacity_ != 0) *buffer_ = '\0';
}

}  // namespace vantiro
