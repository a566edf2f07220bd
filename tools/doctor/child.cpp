#include "child.h"

#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <thread>

namespace doctor {
namespace {

using Clock = std::chrono::steady_clock;
constexpr auto patience = std::chrono::seconds(60);
constexpr auto patience_after_answer = std::chrono::seconds(5);

// The child tells what it found in memory that both see: a descriptor more might be one too many.
// Names and facts, each ended by a NUL, stand behind each other.
struct Answer {
  std::atomic<std::size_t> length;
  char text[256 * 1024];
};
Answer *answer;

void tell(const std::string &name, const std::string &fact) {
  const std::size_t start = answer->length;
  if (name.size() + fact.size() + 2 > sizeof answer->text - start) return;
  char *const text = answer->text + start;
  name.copy(text, name.size());
  fact.copy(text + name.size() + 1, fact.size());
  answer->length = start + name.size() + fact.size() + 2;
}

Facts told() {
  Facts facts;
  const char *const end = answer->text + answer->length;
  for (const char *at = answer->text; at < end;) {
    const std::string name = at;
    at += name.size() + 1;
    const std::string fact = at;
    at += fact.size() + 1;
    const auto same = std::find_if(facts.begin(), facts.end(),
                                   [&](const auto &known) { return known.first == name; });
    if (same == facts.end()) {
      facts.emplace_back(name, fact);
    } else {
      same->second = fact;
    }
  }
  return facts;
}

[[noreturn]] void run(const Job &job, int output) {
  dup2(output, STDOUT_FILENO);
  dup2(output, STDERR_FILENO);
  close_range(STDERR_FILENO + 1, ~0U, 0);
  const rlimit no_core{0, 0};
  setrlimit(RLIMIT_CORE, &no_core);
  job(tell);
  std::fflush(nullptr);
  _exit(0);
}

// Whether the child is through with the start, even if its Java threads keep it alive.
bool has_status() { return !Outcome{told(), "", ""}.fact("status").empty(); }

// The end of the child in words.
std::string await(pid_t child) {
  auto deadline = Clock::now() + patience;
  bool answered = false;
  int status = 0;
  while (waitpid(child, &status, WNOHANG) == 0) {
    if (!answered && has_status()) {
      answered = true;
      deadline = Clock::now() + patience_after_answer;
    }
    if (Clock::now() > deadline) {
      kill(child, SIGKILL);
      waitpid(child, &status, 0);
      return answered ? "" : "did not come to an end within 60 seconds";
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  if (WIFSIGNALED(status))
    return std::string("was ended by a signal: ") + strsignal(WTERMSIG(status));
  const int code = WEXITSTATUS(status);
  return code == 0 && has_status() ? "" : "ended with status " + std::to_string(code);
}

std::string contents(int file) {
  std::string text;
  char piece[4096];
  ssize_t length;
  lseek(file, 0, SEEK_SET);
  while ((length = read(file, piece, sizeof piece)) > 0) {
    text.append(piece, static_cast<std::size_t>(length));
  }
  return text;
}

}  // namespace

std::string Outcome::fact(const std::string &name) const {
  for (const auto &[known, fact] : facts) {
    if (known == name) return fact;
  }
  return "";
}

Outcome run_in_child(const Job &job) {
  Outcome outcome;
  void *const shared =
      mmap(nullptr, sizeof(Answer), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  const int output = memfd_create("output", MFD_CLOEXEC);
  const pid_t child = shared != MAP_FAILED && output >= 0 ? fork() : -1;
  answer = static_cast<Answer *>(shared);
  if (child == 0) run(job, output);
  if (child < 0) {
    outcome.end = std::string("could not be started: ") + strerror(errno);
  } else {
    outcome.end = await(child);
    outcome.output = contents(output);
    outcome.facts = told();
  }
  if (output >= 0) close(output);
  if (shared != MAP_FAILED) munmap(shared, sizeof(Answer));
  return outcome;
}

}  // namespace doctor
