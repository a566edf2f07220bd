#include "execution.h"

#include <signal.h>
#include <string.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <deque>
#include <fstream>
#include <future>
#include <optional>
#include <vantiro.hpp>

#include "command.h"
#include "failures.h"
#include "printer.h"
#include "progress.h"
#include "scratch.h"

namespace fs = std::filesystem;

namespace each {
namespace {

using namespace std::chrono_literals;

constexpr const char *script_name = ".vantiro-each";
std::string command_of_all() { return std::string(". ./") + script_name; }

constexpr int most_failures = 100;

// The signal that asked for the end.
volatile sig_atomic_t signalled = 0;

// The first of them stops the run in order, a second one the program. They take the place of
// Java's, which would end the program at once.
void listen_to_signals() {
  struct sigaction action {};
  action.sa_handler = [](int signal) { signalled = signal; };
  action.sa_flags = static_cast<int>(SA_RESETHAND);
  for (const int signal : {SIGHUP, SIGINT, SIGTERM}) {
    struct sigaction before {};
    sigaction(signal, nullptr, &before);
    if (before.sa_handler != SIG_IGN) sigaction(signal, &action, nullptr);
  }
}

void write_file(const fs::path &path, const std::string &text) {
  std::ofstream file(path, std::ios::binary);
  if (!(file << text).flush()) {
    throw std::system_error(errno, std::generic_category(), "cannot write " + path.string());
  }
}

vantiro::library started(const Options &options) {
  vantiro::settings settings;
  settings.file = options.settings;
  settings.processors = options.jobs;
  settings.job_timeout = options.timeout;
  const vantiro::library library(settings);
  // From here on there are files to be removed at the end.
  listen_to_signals();
  return library;
}

class Execution {
 public:
  explicit Execution(const Options &options)
      : options_(options),
        grid_(started(options)),
        scratch_(options.tmpdir.empty() ? fs::temp_directory_path() : options.tmpdir),
        outputs_(options.results.empty() ? scratch_.path() / "outputs" : options.results),
        run_(grid_),
        project_(vantiro::call(vantiro_peach_getProjectHandle, run_.handle())),
        printer_(options, outputs_) {
    const int count = static_cast<int>(options.inputs.size());
    for (int job = 1; job <= count; ++job) open_.push_back(job);
  }

  int perform() {
    describe();
    auto jobs = std::async(std::launch::async, [this] {
      const vantiro::attachment attached;
      run_.execute();
    });
    try {
      while (jobs.wait_for(10ms) != std::future_status::ready) {
        vantiro::call(vantiro_actionWait, 100);
        look();
        if (!stopped_) stop_if_asked();
      }
      look();
      progress_.hide();
      printer_.finish();
    } catch (...) {
      // The thread that runs the jobs is waited for in any case.
      progress_.hide();
      run_.stop();
      throw;
    }
    return conclude(jobs);
  }

 private:
  void describe() {
    const Command command(options_);
    run_.name("vantiro-each").state_directory(outputs_);
    run_.executable(command_of_all());
    // A pattern may fit nothing: a job may well remove what it printed.
    if (options_.results.empty()) run_.output("{stdout,stderr}");
    run_.set(vantiro_peach_setJobFileNames, 1, script_name);
    // The archive of these files is made anew in any case: there was no run with them before.
    run_.set(vantiro_peach_setJobSkipDigest, true);
    run_.set(vantiro_peach_setCleanup, true).set(vantiro_peach_setRemove, true);
    run_.set(vantiro_peach_setAllowPartial, true);
    for (std::size_t i = 0; i < options_.inputs.size(); ++i) {
      const int job = static_cast<int>(i) + 1;
      const fs::path script = scratch_.path() / ("job-" + std::to_string(job));
      write_file(script, command.script(job, options_.inputs[i]));
      if (options_.transfer) {
        run_.set(vantiro_peach_addJobFile, 2, script, options_.files[i]);
      } else {
        run_.set(vantiro_peach_addJobFile, 1, script);
      }
    }
  }

  int figure(const char *name) const {
    const std::string text = vantiro::text(vantiro_getProjectStatistic, project_, name);
    return text.empty() ? 0 : std::stoi(text);
  }

  Counts count() const {
    return {static_cast<int>(options_.inputs.size()), figure("running"), figure("completed"),
            figure("failed")};
  }

  // Prints what ended since the last look.
  void look() {
    const Counts counts = count();
    const std::vector<int> ended = newly_ended(counts.ended());
    if (!ended.empty()) progress_.hide();
    printer_.print(ended);
    if (!stopped_) progress_.show(counts);
  }

  // They begin in order, so that those that ended are among the first.
  std::vector<int> newly_ended(int ended_in_all) {
    std::vector<int> ended;
    const std::size_t still_open = options_.inputs.size() - static_cast<std::size_t>(ended_in_all);
    for (auto job = open_.begin(); job != open_.end() && open_.size() > still_open;) {
      if (vantiro::call(vantiro_isJobCompleted, project_, *job)) {
        ended.push_back(*job);
        job = open_.erase(job);
      } else {
        ++job;
      }
    }
    return ended;
  }

  void stop_if_asked() {
    if (signalled) {
      stopped_ = std::string("stopped by SIG") + sigabbrev_np(signalled);
    } else if (halts(count())) {
      stopped_ = "stopped as --halt says";
    }
    if (stopped_) run_.stop();
  }

  bool halts(const Counts &counts) const {
    switch (options_.halt.of) {
      case Halt::Count::failed:
        return counts.failed >= options_.halt.after;
      case Halt::Count::succeeded:
        return counts.succeeded >= options_.halt.after;
      case Halt::Count::ended:
        return counts.ended() >= options_.halt.after;
      default:
        return false;
    }
  }

  int conclude(std::future<void> &jobs) {
    const Counts counts = count();
    try {
      jobs.get();
    } catch (const vantiro::error &) {
      // A run that was stopped before its first job has failed by that.
      if (!stopped_) throw;
    }
    progress_.finish(counts);
    if (stopped_) {
      std::fprintf(stderr, "vantiro-each: %s; %d of %d jobs had not ended\n", stopped_->c_str(),
                   counts.jobs - counts.ended(), counts.jobs);
    } else if (counts.failed > 0) {
      const std::string message = vantiro::text(vantiro_peach_getLastErrorMessage, run_.handle());
      std::fputs(failures(message, command_of_all(), options_.inputs).c_str(), stderr);
    }
    run_.done();
    if (signalled && stopped_) return 128 + signalled;
    return std::min(counts.failed, most_failures + 1);
  }

  const Options &options_;
  const vantiro::library grid_;
  const Scratch scratch_;
  const fs::path outputs_;
  vantiro::run run_;
  const int project_;
  Printer printer_;
  Progress progress_;
  std::deque<int> open_;  // jobs of which it is not known that they ended
  std::optional<std::string> stopped_;
};

}  // namespace

int execute(const Options &options) { return Execution(options).perform(); }

}  // namespace each
