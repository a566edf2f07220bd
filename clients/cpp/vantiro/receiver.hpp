/**
 * @file vantiro/receiver.hpp
 * @brief How a line that a job writes finds the receiver of its run.
 */
#ifndef VANTIRO_RECEIVER_HPP
#define VANTIRO_RECEIVER_HPP

#include <exception>
#include <functional>
#include <memory>
#include <mutex>
#include <string_view>
#include <utility>

namespace vantiro {

/** @brief Receives an intermediate result; on the local grid `<job>:<line>`. */
using receiver = std::function<void(std::string_view)>;

namespace detail {

// A receiver and what it threw, which must not leave through C and Java.
class receiving {
 public:
  explicit receiving(receiver next) : receiver_(std::move(next)) {}

  void take(const char *text) noexcept {
    const std::lock_guard lock(mutex_);
    if (failure_ || !receiver_) return;
    try {
      receiver_(text);
    } catch (...) {
      failure_ = std::current_exception();
    }
  }
  void rethrow() {
    const std::lock_guard lock(mutex_);
    if (failure_) std::rethrow_exception(std::exchange(failure_, nullptr));
  }

 private:
  std::mutex mutex_;  // a grid that is not the local one may deliver by several threads
  receiver receiver_;
  std::exception_ptr failure_;
};

// The library has one callback for all runs. Which run a line is of is told by the thread that
// executes it; a line that comes on another thread is taken to be of the run that was set up last.
inline thread_local receiving *executing = nullptr;

class last {
 public:
  void replace(const std::shared_ptr<receiving> &next) {
    const std::lock_guard lock(mutex_);
    present_ = next;
  }
  std::shared_ptr<receiving> present() const {
    const std::lock_guard lock(mutex_);
    return present_.lock();
  }

 private:
  mutable std::mutex mutex_;
  std::weak_ptr<receiving> present_;
};

// Never destroyed: a thread of Java may deliver until the very end of the process.
inline last &last_receiver() {
  static auto *const receiver = new last;
  return *receiver;
}

// A receiver may execute a run of its own, and then goes on with the one before.
class delivery {
 public:
  explicit delivery(const std::shared_ptr<receiving> &present)
      : kept_(present), before_(std::exchange(executing, present.get())) {}
  ~delivery() { executing = before_; }
  delivery(const delivery &) = delete;
  delivery &operator=(const delivery &) = delete;

 private:
  std::shared_ptr<receiving> kept_;
  receiving *before_;
};

inline void deliver(const char *text) noexcept {
  if (!text) return;
  if (executing) return executing->take(text);
  if (const auto receiver = last_receiver().present()) receiver->take(text);
}

}  // namespace detail
}  // namespace vantiro

#endif
