/**
 * @file vantiro/owner.hpp
 * @brief What projects and runs have in common.
 */
#ifndef VANTIRO_OWNER_HPP
#define VANTIRO_OWNER_HPP

#include <utility>

namespace vantiro {

/**
 * @brief The one owner of a handle, which is moved, not copied.
 *
 * @tparam End  what ends the thing behind a handle; never called for the handle of an owner that
 *              was moved from, or released
 */
template <void (*End)(int) noexcept>
class owner {
 public:
  /** @param handle  what it owns from now on */
  explicit owner(int handle) noexcept : handle_(handle) {}
  /** @param other  an owner that owns nothing afterwards */
  owner(owner &&other) noexcept : handle_(other.release()) {}
  /**
   * @param other  an owner that owns nothing afterwards
   * @return this owner, of the other's handle
   */
  owner &operator=(owner &&other) noexcept {
    owner(std::move(other)).swap(*this);
    return *this;
  }
  ~owner() {
    if (handle_ != nothing) End(handle_);
  }

  /** @return the handle, for the functions of `vantiro.h` */
  int handle() const noexcept { return handle_; }
  /** @return the handle, which the caller ends from now on */
  int release() noexcept { return std::exchange(handle_, nothing); }

 private:
  static constexpr int nothing = -1;
  void swap(owner &other) noexcept { std::swap(handle_, other.handle_); }
  int handle_;
};

}  // namespace vantiro

#endif
