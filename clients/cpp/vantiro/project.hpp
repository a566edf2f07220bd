/**
 * @file vantiro/project.hpp
 * @brief A project: jobs that are described one by one, and the archives of their results.
 */
#ifndef VANTIRO_PROJECT_HPP
#define VANTIRO_PROJECT_HPP

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <string>
#include <vantiro/library.hpp>
#include <vantiro/owner.hpp>
#include <vector>

namespace vantiro {

namespace detail {

template <typename Function>
int call_with_list(Function function, int handle, const std::vector<std::string> &strings) {
  std::vector<const char *> list;
  list.reserve(strings.size());
  for (const std::string &string : strings) list.push_back(string.c_str());
  const frame scope;
  return check(function(handle, static_cast<int>(list.size()), list.data()));
}

inline void close_session(int handle) noexcept { vantiro_close(handle); }
inline void stop_project(int handle) noexcept { vantiro_stopProject(handle); }

}  // namespace detail

/**
 * @brief A project in a session of its own. Its end stops the jobs that have not ended; results
 * stay with the grid until remove() or its cleanup.
 */
class project {
 public:
  /**
   * @brief Creates a project without jobs.
   *
   * @param name        its name
   * @param priority    higher ones first
   * @param parameters  each `key=value`
   */
  explicit project(const library &, const std::string &name, int priority = 0,
                   const std::vector<std::string> &parameters = {})
      : session_(call(vantiro_open)),
        project_(call(vantiro_createEmptyProject, session_.handle(), priority, name)) {
    if (!parameters.empty()) {
      detail::call_with_list(vantiro_setProjectParams2, handle(), parameters);
    }
  }
  /** @return the handle, for the functions of `vantiro.h` */
  int handle() const noexcept { return project_.handle(); }

  /**
   * @brief Adds a job: a program with its arguments.
   *
   * @param command  the program, then its arguments
   * @return the number of the job
   */
  int add_job(const std::vector<std::string> &command) {
    return detail::call_with_list(vantiro_createJob2, handle(), command);
  }
  /**
   * @brief Adds jobs: one for each line, which a shell runs.
   *
   * @param lines  the lines
   */
  void add_lines(const std::vector<std::string> &lines) {
    detail::call_with_list(vantiro_createProjectJobs2, handle(), lines);
  }

  /** @brief Starts the jobs; no more are added. */
  void start() {
    call(vantiro_markAllJobsCreated, handle());
    call(vantiro_startProject, handle());
  }
  /** @brief Waits until all jobs have ended; throws when one has failed. */
  void wait() { call(vantiro_waitCompletion, handle()); }
  /**
   * @brief Waits for some time at most.
   *
   * @param time  the time
   * @return whether all jobs have ended, well or not
   */
  bool wait_for(std::chrono::milliseconds time) {
    using std::chrono::steady_clock;
    // A job may end between the question and the wait: that is found out with the next question.
    constexpr std::chrono::milliseconds at_most{50};
    const auto deadline = steady_clock::now() + time;
    while (!completed()) {
      const auto left =
          std::chrono::ceil<std::chrono::milliseconds>(deadline - steady_clock::now());
      if (left.count() <= 0) return false;
      call(vantiro_actionWait, static_cast<int>(std::min(left, at_most).count()));
    }
    return true;
  }
  /** @return whether all jobs have ended, well or not */
  bool completed() const { return call(vantiro_isCompleted, handle()) != 0; }
  /** @return whether a job has failed */
  bool failed() const { return call(vantiro_isFailed, handle()) != 0; }
  /** @brief Ends all jobs. */
  void stop() { call(vantiro_stopProject, handle()); }
  /** @brief Ends all jobs and deletes what the grid keeps of them; nothing can be asked any more.
   */
  void remove() {
    call(vantiro_removeProject, handle());
    project_.release();
  }
  /** @return how long the jobs have run */
  std::chrono::milliseconds used_time() const {
    return std::chrono::milliseconds(call(vantiro_getUsedTime, handle()));
  }

  /**
   * @brief Copies the archives of the results that are there.
   *
   * @param directory  where they are put, in a directory of the project's own
   * @return the archives
   */
  std::vector<std::filesystem::path> download(const std::filesystem::path &directory) {
    call(vantiro_setDownloadDir, handle(), directory);
    call(vantiro_downloadResult, handle());
    const std::filesystem::path place = text(vantiro_getResultDirectory, handle());
    std::vector<std::filesystem::path> archives;
    for (const std::string &name : list(vantiro_getResultFiles, handle())) {
      archives.push_back(place / name);
    }
    return archives;
  }
  /**
   * @brief Unpacks the results, each into `job-<n>/` of a directory of the project's own.
   *
   * @param directory  where that directory is made
   * @return how many files there are
   */
  int unzip(const std::filesystem::path &directory) {
    call(vantiro_setUnzipDir, handle(), directory);
    return call(vantiro_unzip, handle());
  }

 private:
  owner<detail::close_session> session_;
  owner<detail::stop_project> project_;
};

}  // namespace vantiro

#endif
