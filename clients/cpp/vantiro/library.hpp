/**
 * @file vantiro/library.hpp
 * @brief The start of the library.
 */
#ifndef VANTIRO_LIBRARY_HPP
#define VANTIRO_LIBRARY_HPP

#include <chrono>
#include <filesystem>
#include <string>
#include <vantiro/call.hpp>

namespace vantiro {

/** @brief The settings of vantiro_initWithoutFile(), by what they mean to the local grid. What is
 *         left as it is comes from the settings file, or else is the grid's default. */
struct settings {
  std::filesystem::path home{};        /**< where the grid keeps its files */
  std::string login{};                 /**< the user's name */
  std::string password{};              /**< what opens the settings file */
  std::filesystem::path temporary{};   /**< an existing directory, the jobs' `TMPDIR` */
  int processors = 0;                  /**< jobs at once; 0 for all processors */
  std::string log_level{};             /**< of the log on standard error */
  std::filesystem::path download{};    /**< where results are downloaded to */
  std::chrono::seconds job_timeout{0}; /**< until a job is killed; 0 for never */
  bool keep_work = false;              /**< whether working directories are kept */
  std::filesystem::path unzip{};       /**< where results are unpacked */
  std::filesystem::path file{};        /**< the settings file */
};

namespace detail {

// Java takes null for "as it is".
inline const char *unless_empty(const std::string &text) {
  return text.empty() ? nullptr : text.c_str();
}
inline const char *unless_empty(const std::filesystem::path &path) {
  return unless_empty(path.native());
}

}  // namespace detail

/**
 * @brief The library, started. There is one Java machine in a process, and it lives as long.
 *
 * A start that fails throws an error that points to `vantiro-doctor`, unless the Java side has said
 * why.
 */
class library {
 public:
  /** @brief Starts with the Java library's default settings. */
  library() { require_start(vantiro_init()); }
  /**
   * @brief Starts with a settings file.
   *
   * @param file  the settings file
   */
  explicit library(const std::filesystem::path &file) {
    const frame scope;
    require_start(vantiro_initFile(file.c_str()));
  }
  /**
   * @brief Starts with these settings.
   *
   * @param with  the settings
   */
  explicit library(const settings &with) {
    const frame scope;
    using detail::unless_empty;
    require_start(vantiro_initWithoutFile(
        unless_empty(with.home), unless_empty(with.login), unless_empty(with.password),
        unless_empty(with.temporary), with.processors, unless_empty(with.log_level),
        unless_empty(with.download), static_cast<int>(with.job_timeout.count()), with.keep_work,
        unless_empty(with.unzip), unless_empty(with.file)));
  }
  /**
   * @brief Asks for a property of the Java machine.
   *
   * @param key  its name, such as `java.version`
   * @return its value; empty when there is none
   */
  std::string java_property(const std::string &key) const {
    return text(vantiro_getJavaSystemProperty, key.c_str());
  }
  /** @return the user's name */
  std::string user_login() const { return text(vantiro_getUserLogin); }

 private:
  static void require_start(int status) {
    if (status >= 0) return;
    if (detail::is_of_java(status)) check(status);
    throw error(status, detail::describe(status), "vantiro-doctor tells the cause and the cure");
  }
};

}  // namespace vantiro

#endif
