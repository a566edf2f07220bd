#include "child.h"

#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <stdexcept>
#include <thread>

namespace doctor {
namespace {

using Clock = std::chrono::steady_clock;

// The child tells what it found in memory that both see: a descriptor more might be one too many.
// Names and facts, each ended by a NUL, stand behind each other.
struct Told {
  std::atomic<std::size_t> length;
  char text[256 * 1024];
};
SharedPage<Told> told;

Facts facts_told() {
  Facts facts;
  const char *const end = told.value.text + told.value.length;
  for (const char *at = told.value.text; at < end;) {
    const std::string name = at;
    at += name.size() + 1;
    facts.emplace_back(name, at);
    at += facts.back().second.size() + 1;
  }
  return facts;
}

[[noreturn]] void run(const std::function<void()> &job, int output) {
  dup2(output, STDOUT_FILENO);
  dup2(output, STDERR_FILENO);
  close_range(STDERR_FILENO + 1, ~0U, 0);
  setvbuf(stdout, nullptr, _IONBF, 0);
  const rlimit no_core{0, 0};
  setrlimit(RLIMIT_CORE, &no_core);
  job();
  _exit(0);
}

// The end of the child in words.
std::string await(pid_t child) {
  const auto deadline = Clock::now() + patience;
  int status = 0;
  while (waitpid(child, &status, WNOHANG) == 0) {
    if (Clock::now() > deadline) {
      kill(child, SIGKILL);
      waitpid(child, &status, 0);
      return "did not come to an end within " + std::to_string(patience.count()) + " seconds";
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
  }
  if (WIFSIGNALED(status)) {
    return std::string("was ended by a signal (") + strsignal(WTERMSIG(status)) + ")";
  }
  if (WEXITSTATUS(status) == 0) return "";
  return "ended with status " + std::to_string(WEXITSTATUS(status));
}

}  // namespace

std::string Outcome::fact(const std::string &name) const {
  const auto found = std::find_if(facts.rbegin(), facts.rend(),
                                  [&](const auto &known) { return known.first == name; });
  return found == facts.rend() ? "" : found->second;
}

void tell(const std::string &name, const std::string &fact) {
  char *const end = told.value.text + told.value.length;
  const auto room = static_cast<std::size_t>(std::end(told.value.text) - end);
  std::snprintf(end, room, "%s%c%s", name.c_str(), '\0', fact.c_str());
  const std::size_t needed = name.size() + fact.size() + 2;
  if (needed > room) return;
  told.value.length += needed;
}

void share_page(void *page, std::size_t size) {
  if (mmap(page, size, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS | MAP_FIXED, -1, 0) !=
      page) {
    throw std::runtime_error(std::string("no memory to share: ") + strerror(errno));
  }
}

Outcome run_in_child(const std::function<void()> &job) {
  share_page(&told, sizeof told);
  Outcome outcome;
  const int output = memfd_create("output", MFD_CLOEXEC);
  const pid_t child = output >= 0 ? fork() : -1;
  if (child == 0) run(job, output);
  if (child < 0) {
    outcome.end = std::string("could not be started: ") + strerror(errno);
  } else {
    outcome.end = await(child);
    std::ifstream written("/proc/self/fd/" + std::to_string(output));
    outcome.output.assign(std::istreambuf_iterator<char>(written), {});
    outcome.facts = facts_told();
  }
  if (output >= 0) close(output);
  // The report that a machine leaves when it crashes.
  unlink(("hs_err_pid" + std::to_string(child) + ".log").c_str());
  return outcome;
}

}  // namespace doctor
