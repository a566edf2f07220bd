/**
 * @file vantiro/run.hpp
 * @brief A parallel-each run: one executable, many jobs, their output files and their lines.
 */
#ifndef VANTIRO_RUN_HPP
#define VANTIRO_RUN_HPP

#include <filesystem>
#include <iterator>
#include <string>
#include <vantiro/library.hpp>
#include <vantiro/owner.hpp>
#include <vantiro/receiver.hpp>

namespace vantiro {

namespace detail {

inline void end_run(int handle) noexcept { vantiro_peach_done(handle); }

}  // namespace detail

/**
 * @brief A run, ended with its owner. What has no member of its own is set by set(), before
 *        execute().
 */
class run {
 public:
  class file_iterator;
  class file_range;

  /** @brief Begins the description of a run. */
  explicit run(const library &) : run_(call(vantiro_peach_handle)) {}
  /** @return the handle, for the functions of `vantiro.h` */
  int handle() const noexcept { return run_.handle(); }

  /**
   * @brief Makes any setting.
   *
   * @param function   for example vantiro_peach_addParamFileWithTarget
   * @param arguments  those after the handle
   * @return this run
   */
  template <typename Function, typename... Arguments>
  run &set(Function function, const Arguments &...arguments) {
    require(detail::perform(function, handle(), arguments...));
    return *this;
  }
  /**
   * @param text  its name
   * @return this run
   */
  run &name(const std::string &text) { return set(vantiro_peach_setName, text); }
  /**
   * @param number  how many jobs there are
   * @return this run
   */
  run &jobs(int number) { return set(vantiro_peach_setJobs, number); }
  /**
   * @param line  the line that a shell runs in each job
   * @return this run
   */
  run &executable(const std::string &line) { return set(vantiro_peach_setExecutable, line); }
  /**
   * @param file  a program that each job gets
   * @param as    its name there
   * @return this run
   */
  run &program(const std::filesystem::path &file, const std::string &as) {
    return set(vantiro_peach_addExeFile, file, as, "", "");
  }
  /**
   * @param key    a parameter, in the jobs' environment as `VANTIRO_PARAM_<key>`
   * @param value  its value
   * @return this run
   */
  run &parameter(const std::string &key, const std::string &value) {
    return set(vantiro_peach_putProjectParam, key, value);
  }
  /**
   * @param directory  where outputs are put, and found again by a later run
   * @return this run
   */
  run &state_directory(const std::filesystem::path &directory) {
    return set(vantiro_peach_setStateDir, directory);
  }
  /**
   * @param pattern  a file that the jobs leave, or a pattern of several
   * @return this run
   */
  run &output(const std::string &pattern) { return set(vantiro_peach_addOutputFile, pattern); }

  /**
   * @brief Has what the jobs write line by line delivered while the run executes.
   *
   * The receiver is called by the thread that is in execute(), one call at a time, and lives as
   * long as the run. When it throws, it is not called again; the jobs go on, and execute() throws
   * the same at their end. To end the run at once, call stop() in it.
   *
   * @param next  any callable that takes a `std::string_view`
   * @return this run
   */
  run &receive(receiver next) {
    receiver_ = std::make_shared<detail::receiving>(std::move(next));
    detail::last_receiver().replace(receiver_);
    return set(vantiro_peach_setIntermediateResultHandler, detail::deliver);
  }

  /** @brief Runs all jobs; throws when one has failed, or else what the receiver threw. */
  void execute() {
    int status = VANTIRO_OK;
    {
      const frame scope;
      const detail::delivery to(receiver_);
      status = vantiro_peach_execute(handle());
    }
    if (receiver_) receiver_->rethrow();
    require(status);
  }
  /** @brief Ends all jobs of a run that executes. */
  void stop() { call(vantiro_stopProject, call(vantiro_peach_getProjectHandle, handle())); }
  /** @return the output files; each is handed out once */
  file_range files();
  /** @brief Ends the run, as its owner's end does, but tells when that fails. */
  void done() { call(vantiro_peach_done, run_.release()); }

 private:
  void require(int status) const {
    if (status < 0) detail::fail(status, vantiro_peach_getLastErrorMessage, handle());
  }

  std::shared_ptr<detail::receiving> receiver_;
  owner<detail::end_run> run_;
};

/** @brief Fetches one output file after the other. */
class run::file_iterator {
 public:
  using iterator_category = std::input_iterator_tag; /**< it goes once through the files */
  using value_type = std::filesystem::path;          /**< absolute */
  using difference_type = std::ptrdiff_t;            /**< as the standard library wants it */
  using pointer = const std::filesystem::path *;     /**< as the standard library wants it */
  using reference = const std::filesystem::path &;   /**< as the standard library wants it */

  /** @brief The end. */
  file_iterator() = default;
  /** @param owner  a run that has executed */
  explicit file_iterator(const run &owner) : run_(&owner) { ++*this; }
  /** @return the file */
  reference operator*() const { return file_; }
  /** @return the file */
  pointer operator->() const { return &file_; }
  /** @return itself, at the next file */
  file_iterator &operator++() {
    file_ = text(vantiro_peach_nextFile, run_->handle());
    if (file_.empty()) run_ = nullptr;
    return *this;
  }
  /** @brief Goes on to the next file. */
  void operator++(int) { ++*this; }
  /**
   * @param a,b  of one run
   * @return whether both are at the end, or neither
   */
  friend bool operator==(const file_iterator &a, const file_iterator &b) {
    return a.run_ == b.run_;
  }
  /**
   * @param a,b  of one run
   * @return whether one is at the end
   */
  friend bool operator!=(const file_iterator &a, const file_iterator &b) { return !(a == b); }

 private:
  const run *run_ = nullptr;
  std::filesystem::path file_;
};

/** @brief The output files that have not been handed out yet. */
class run::file_range {
 public:
  /** @param owner  a run that lives longer */
  explicit file_range(const run &owner) : run_(&owner) {}
  /** @return the next file, or the end when there is none now */
  file_iterator begin() const { return file_iterator(*run_); }
  /** @return the end */
  file_iterator end() const { return {}; }

 private:
  const run *run_;
};

inline run::file_range run::files() { return file_range(*this); }

}  // namespace vantiro

#endif
