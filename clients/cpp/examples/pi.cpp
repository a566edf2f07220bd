// Estimates pi with jobs that run at the same time: a parallel-each run in C++.
//
//   pi_cpp [SAMPLES]    SAMPLES is the number of random points that each of the 16 jobs draws
#include <unistd.h>

#include <charconv>
#include <fstream>
#include <iostream>
#include <vantiro.hpp>

namespace fs = std::filesystem;

namespace {

constexpr int jobs = 16;

void estimate(const fs::path &directory, const std::string &samples) {
  vantiro::settings settings;
  settings.home = directory / "grid";
  const vantiro::library grid(settings);

  // The worker lies beside this program.
  vantiro::run run(grid);
  run.name("pi").jobs(jobs).state_directory(directory / "state");
  run.program(fs::read_symlink("/proc/self/exe").parent_path() / "pi_worker", "pi_worker");
  run.executable("./pi_worker").parameter("samples", samples).output("pi.txt");
  run.receive([&, done = 0](std::string_view line) mutable {
    if (line.substr(line.rfind(' ') + 1) != samples) return;  // not the last line of the job
    std::cout << "job " << line.substr(0, line.find(':')) << " done, " << ++done << " of " << jobs
              << std::endl;
  });
  run.execute();

  double inside = 0, drawn = 0;
  for (const fs::path &path : run.files()) {
    double job_inside = 0, job_drawn = 0;
    if (!(std::ifstream(path) >> job_inside >> job_drawn)) {
      throw std::runtime_error(path.string() + " is not a result of a job");
    }
    inside += job_inside;
    drawn += job_drawn;
  }
  std::cout << "pi is about " << 4 * inside / drawn << ", on "
            << grid.java_property("sun.arch.data.model") << "-bit Java "
            << grid.java_property("java.version") << std::endl;
}

}  // namespace

int main(int argc, char **argv) {
  const std::string samples = argc > 1 ? argv[1] : "20000000";
  int number = 0;
  const auto [end, problem] =
      std::from_chars(samples.data(), samples.data() + samples.size(), number);
  if (argc > 2 || problem != std::errc() || *end || number < 1 || number > 1000000000) {
    std::cerr << "usage: pi_cpp [SAMPLES]\nSAMPLES is from 1 to 1000000000, for each of " << jobs
              << " jobs\n";
    return 2;
  }
  std::string scratch = (fs::temp_directory_path() / "pi-XXXXXX").string();
  int status = EXIT_FAILURE;
  try {
    if (!mkdtemp(scratch.data())) throw std::runtime_error(scratch + " cannot be made");
    estimate(scratch, samples);
    if (!std::cout) throw std::runtime_error("standard output cannot be written");
    status = EXIT_SUCCESS;
  } catch (const std::exception &error) {
    std::cerr << "pi_cpp: " << error.what() << '\n';
  }
  std::error_code ignored;
  fs::remove_all(scratch, ignored);
  return status;
}
