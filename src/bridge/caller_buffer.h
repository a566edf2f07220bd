// The buffer into which a caller wants a string, and its capacity as it was on entry.
#pragma once

namespace vantiro {

class CallerBuffer {
 public:
  // Reads the capacity; so the buffer is made before anything else happens in a call.
  CallerBuffer(char *buffer, unsigned int *size) : buffer_(buffer), size_(size), capacity_(*size) {}

  // Tells the caller how large a buffer has to be.
  void announce(unsigned int bytes) const { *size_ = bytes; }

  // Announces `bytes`, which count the NUL, and copies them when they fit.
  int put(const char *text, unsigned int bytes) const;

  // There is no string, and that is no failure.
  int put_nothing() const;

  // Leaves an empty string behind where there is room for one.
  void blank() const;

 private:
  char *buffer_;
  unsigned int *size_;
  unsigned int capacity_;
};

}  // namespace vantiro
