// Estimates pi with jobs that run at the same time: a parallel-each run in C++.
//
//   pi_cpp [SAMPLES]    SAMPLES is the number of random points that each of the 16 jobs draws
#include <unistd.h>

#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <mutex>
#include <stdexcept>
#include <string>
#include <vantiro.hpp>

namespace {

constexpr int jobs = 16;

// The programs of the examples, the worker among them.
const std::filesystem::path here = std::filesystem::read_symlink("/proc/self/exe").parent_path();

struct Counts {
  long long inside = 0;
  long long samples = 0;
};

Counts read_counts(const std::string &path) {
  Counts counts;
  std::ifstream file(path);
  if (!(file >> counts.inside >> counts.samples)) {
    throw std::runtime_error(path + " is not a result of a job");
  }
  return counts;
}

// Several jobs report at the same time.
class Progress {
 public:
  explicit Progress(long long samples) : samples_of_a_job_(samples) {}

  void take(const std::string &result) {
    int job = 0;
    Counts counts;
    if (std::sscanf(result.c_str(), "%d:%lld %lld", &job, &counts.inside, &counts.samples) != 3 ||
        counts.samples != samples_of_a_job_) {
      return;
    }
    const std::lock_guard lock(mutex_);
    std::cout << "job " << job << " done, " << ++done_ << " of " << jobs << std::endl;
  }

 private:
  const long long samples_of_a_job_;
  std::mutex mutex_;
  int done_ = 0;
};

int describe_run(const std::filesystem::path &directory, const std::string &samples) {
  using vantiro::call;
  const int run = call(vantiro_peach_handle);
  call(vantiro_peach_setName, run, "pi");
  call(vantiro_peach_setStateDir, run, (directory / "state").c_str());
  call(vantiro_peach_setJobs, run, jobs);
  call(vantiro_peach_addExeFile, run, (here / "pi_worker").c_str(), "pi_worker", "", "");
  call(vantiro_peach_setExecutable, run, "./pi_worker");
  call(vantiro_peach_putProjectParam, run, "samples", samples.c_str());
  call(vantiro_peach_addOutputFile, run, "pi.txt");
  call(vantiro_peach_setRemove, run, static_cast<unsigned char>(1));
  return run;
}

void estimate(const std::filesystem::path &directory, long long samples) {
  vantiro::call(vantiro_initWithoutFile, (directory / "grid").c_str(), nullptr, nullptr, nullptr, 0,
                nullptr, nullptr, 0, 0, nullptr, nullptr);
  const int run = describe_run(directory, std::to_string(samples));
  Progress progress(samples);
  vantiro::set_receiver(run, [&](const std::string &result) { progress.take(result); });
  vantiro::call(vantiro_peach_execute, run);
  vantiro::set_receiver(run, nullptr);

  Counts sum;
  for (std::string path; !(path = vantiro::text(vantiro_peach_nextFile, run)).empty();) {
    const Counts counts = read_counts(path);
    sum.inside += counts.inside;
    sum.samples += counts.samples;
  }
  vantiro::call(vantiro_peach_done, run);
  std::cout << "pi is about "
            << 4.0 * static_cast<double>(sum.inside) / static_cast<double>(sum.samples) << ", from "
            << sum.samples << " samples, on "
            << vantiro::text(vantiro_getJavaSystemProperty, "sun.arch.data.model") << "-bit Java "
            << vantiro::text(vantiro_getJavaSystemProperty, "java.version") << '\n';
}

// A directory of its own for each run of the program, removed at the end.
class Scratch {
 public:
  Scratch() : path_((std::filesystem::temp_directory_path() / "pi-XXXXXX").string()) {
    if (!mkdtemp(path_.data())) throw std::runtime_error(path_ + " cannot be made");
  }
  ~Scratch() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  std::filesystem::path path() const { return path_; }

 private:
  std::string path_;
};

}  // namespace

int main(int argc, char **argv) {
  long long samples = 20000000;
  char rest = 0;
  if (argc > 2 || (argc == 2 && std::sscanf(argv[1], "%lld%c", &samples, &rest) != 1) ||
      samples < 1 || samples > 1000000000) {
    std::cerr << "usage: pi_cpp [SAMPLES]\nSAMPLES is from 1 to 1000000000, for each of " << jobs
              << " jobs\n";
    return 2;
  }
  try {
    const Scratch scratch;
    estimate(scratch.path(), samples);
    if (!std::cout.flush()) throw std::runtime_error("standard output cannot be written");
  } catch (const std::exception &problem) {
    std::cerr << "pi_cpp: " << problem.what() << '\n';
    return 1;
  }
}
