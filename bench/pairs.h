// Measures two functions in turn: what disturbs the machine disturbs both, and the ratio of each
// pair of neighbours stays.
#pragma once

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <vector>

namespace bench {

inline double now() {
  return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

inline double quantile(std::vector<double> values, double q) {
  const auto place = static_cast<std::size_t>(q * static_cast<double>(values.size() - 1) + 0.5);
  std::nth_element(values.begin(), values.begin() + static_cast<std::ptrdiff_t>(place),
                   values.end());
  return values[place];
}

class Pairs {
 public:
  void add(double ours, double theirs) {
    ours_.push_back(ours);
    theirs_.push_back(theirs);
    ratios_.push_back(ours / theirs);
  }

  // One line of JSON; the times are those of one call in nanoseconds.
  void print(const char *set, const char *name, double scale) const {
    std::printf(
        "{\"set\": \"%s\", \"name\": \"%s\", \"ours\": %.2f, \"theirs\": %.2f, \"ratio\": %.4f, "
        "\"low\": %.4f, \"high\": %.4f, \"pairs\": %zu}\n",
        set, name, scale * quantile(ours_, 0.5), scale * quantile(theirs_, 0.5),
        quantile(ratios_, 0.5), quantile(ratios_, 0.25), quantile(ratios_, 0.75), ratios_.size());
    std::fflush(stdout);
  }

 private:
  std::vector<double> ours_, theirs_, ratios_;
};

// `ours` and `theirs` give the seconds that one batch took.
template <typename Ours, typename Theirs>
Pairs in_turn(double seconds, Ours ours, Theirs theirs) {
  constexpr int at_least = 11;
  Pairs pairs;
  ours();
  theirs();
  const double end = now() + seconds;
  for (int i = 0; i < at_least || now() < end; ++i) {
    // Each goes first in half of the pairs.
    const double first = i % 2 ? theirs() : ours();
    const double second = i % 2 ? ours() : theirs();
    pairs.add(i % 2 ? second : first, i % 2 ? first : second);
  }
  return pairs;
}

}  // namespace bench
