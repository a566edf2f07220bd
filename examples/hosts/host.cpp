// A run from C++17, with the client of clients/cpp.
#include <fstream>
#include <iostream>
#include <vantiro.hpp>

int main() try {
  const vantiro::library grid;
  vantiro::run run(grid);
  run.jobs(5).executable("echo $((VANTIRO_JOB * VANTIRO_JOB)) | tee square").output("square");
  run.receive([](std::string_view line) { std::cout << "line " << line << '\n'; });
  run.execute();
  for (const std::filesystem::path &file : run.files()) {
    std::cout << "file " << std::ifstream(file).rdbuf();
  }
  try {
    vantiro::call(vantiro_setLogLevel, "loud");
  } catch (const vantiro::error &error) {
    std::cout << "failed: " << error.text() << " (" << error.status() << ")\n";
  }
  run.done();
  vantiro::call(vantiro_unload, true);
} catch (const std::exception &error) {
  std::cerr << error.what() << '\n';
  return EXIT_FAILURE;
}
