#include "printer.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <string_view>
#include <system_error>
#include <utility>

namespace fs = std::filesystem;

namespace each {

void write_all(int descriptor, const char *bytes, std::size_t count) {
  while (count > 0) {
    const ssize_t written = write(descriptor, bytes, count);
    if (written < 0 && errno != EINTR) {
      throw std::system_error(errno, std::generic_category(),
                              descriptor == STDOUT_FILENO ? "cannot write standard output"
                                                          : "cannot write standard error");
    }
    if (written < 0) continue;
    bytes += written;
    count -= static_cast<std::size_t>(written);
  }
}

Printer::Printer(const Options &options, fs::path directory)
    : options_(options), directory_(std::move(directory)), waits_(options.inputs.size() + 1) {}

void Printer::print(const std::vector<int> &ended) {
  for (const int job : ended) {
    if (!options_.keep_order) {
      print(job);
      continue;
    }
    waits_[static_cast<std::size_t>(job)] = true;
    while (next_ < static_cast<int>(waits_.size()) && waits_[static_cast<std::size_t>(next_)]) {
      print(next_++);
    }
  }
}

void Printer::finish() {
  for (; options_.keep_order && next_ < static_cast<int>(waits_.size()); ++next_) {
    if (waits_[static_cast<std::size_t>(next_)]) print(next_);
  }
}

void Printer::print(int job) const {
  const fs::path outputs = directory_ / ("job-" + std::to_string(job));
  copy(job, outputs / "stdout", STDOUT_FILENO);
  copy(job, outputs / "stderr", STDERR_FILENO);
  std::error_code ignored;
  if (options_.results.empty()) fs::remove_all(outputs, ignored);
}

void Printer::copy(int job, const fs::path &file, int descriptor) const {
  // A job that could not be begun has none.
  const int source = open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK);
  if (source < 0) return;
  const std::string tag = options_.inputs[static_cast<std::size_t>(job) - 1] + "\t";
  std::array<char, 65536> buffer;
  std::string tagged;
  bool begins_line = true;
  ssize_t count = 0;
  while ((count = read(source, buffer.data(), buffer.size())) > 0) {
    std::string_view bytes(buffer.data(), static_cast<std::size_t>(count));
    if (options_.tag) {
      tagged.clear();
      for (const char byte : bytes) {
        if (begins_line) tagged += tag;
        tagged += byte;
        begins_line = byte == '\n';
      }
      bytes = tagged;
    }
    write_all(descriptor, bytes.data(), bytes.size());
  }
  const int problem = count < 0 ? errno : 0;
  close(source);
  if (problem)
    throw std::system_error(problem, std::generic_category(), "cannot read " + file.string());
}

}  // namespace each
