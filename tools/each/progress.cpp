#include "progress.h"

#include <unistd.h>

#include <cstdio>
#include <string>

namespace each {
namespace {

using namespace std::chrono_literals;

constexpr auto between_drawings = 100ms;
constexpr auto between_lines = 30s;

std::string words(std::chrono::seconds time) {
  const auto seconds = time.count();
  if (seconds < 60) return std::to_string(seconds) + " s";
  if (seconds < 3600) {
    return std::to_string(seconds / 60) + " min " + std::to_string(seconds % 60) + " s";
  }
  return std::to_string(seconds / 3600) + " h " + std::to_string(seconds / 60 % 60) + " min";
}

std::string text(const Counts &counts, std::chrono::duration<double> elapsed, bool is_last) {
  std::string text = std::to_string(counts.ended()) + " of " + std::to_string(counts.jobs) +
                     " jobs done, " + std::to_string(counts.failed) + " failed";
  if (!is_last) text += ", " + std::to_string(counts.running) + " running";
  if (is_last) {
    text += ", in " + words(std::chrono::round<std::chrono::seconds>(elapsed));
  } else if (counts.ended() > 0) {
    const double of_one = elapsed.count() / counts.ended();
    const std::chrono::duration<double> left(of_one * (counts.jobs - counts.ended()));
    text += ", " + words(std::chrono::ceil<std::chrono::seconds>(left)) + " left";
  }
  return text;
}

}  // namespace

Progress::Progress() : on_terminal_(isatty(STDERR_FILENO)) {}

void Progress::show(const Counts &counts) {
  const auto now = clock::now();
  const bool is_due =
      on_terminal_ ? !drawn_ || now - last_ >= between_drawings : now - last_ >= between_lines;
  if (!is_due) return;
  last_ = now;
  told_ = true;
  drawn_ = on_terminal_;
  const std::string line = text(counts, now - begun_, false);
  // A line that is too long for the terminal would not be drawn over by the next one.
  std::fprintf(stderr, on_terminal_ ? "\r\033[K\033[?7l%s\033[?7h" : "%s\n", line.c_str());
}

void Progress::hide() {
  if (drawn_) std::fputs("\r\033[K", stderr);
  drawn_ = false;
}

void Progress::finish(const Counts &counts) {
  hide();
  if (!told_ && !on_terminal_ && counts.failed == 0) return;
  std::fprintf(stderr, "%s\n", text(counts, clock::now() - begun_, true).c_str());
}

}  // namespace each
