// Work in a process of its own, since a Java runtime or the loader may end the process it is in.
#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace doctor {

using Facts = std::vector<std::pair<std::string, std::string>>;

struct Outcome {
  // What the job told, in that order.
  Facts facts;
  // How the process ended, to be put behind "it"; empty when the job came to its end.
  std::string end;
  // What it wrote on standard output and standard error.
  std::string output;

  // The last of that name; empty when it was not told.
  std::string fact(const std::string &name) const;
};

// How long a job may take.
inline std::chrono::seconds patience{60};

// For a job: keeps a fact, should the process end.
void tell(const std::string &name, const std::string &fact);

// Memory of one page that a job and its parent share, for a variable of the type.
template <typename T>
struct alignas(1 << 16) SharedPage {
  T value;
};
void share_page(void *page, std::size_t size);

Outcome run_in_child(const std::function<void()> &job);

}  // namespace doctor
