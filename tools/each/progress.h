// How far the run is, on standard error.
#ifndef EACH_PROGRESS_H
#define EACH_PROGRESS_H

#include <chrono>

namespace each {

struct Counts {
  int jobs = 0, running = 0, succeeded = 0, failed = 0;
  int ended() const { return succeeded + failed; }
};

// One line that is drawn anew on a terminal; elsewhere a line now and then.
class Progress {
 public:
  Progress();

  void show(const Counts &counts);
  // Makes room on the terminal for something else.
  void hide();
  // The last word, where there was one before.
  void finish(const Counts &counts);

 private:
  using clock = std::chrono::steady_clock;

  bool on_terminal_;
  bool drawn_ = false;
  bool told_ = false;
  clock::time_point begun_ = clock::now();
  clock::time_point last_ = begun_;
};

}  // namespace each

#endif
