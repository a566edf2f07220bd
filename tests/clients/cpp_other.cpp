// A second translation unit of the C++ client, built once for each other standard.
#include <iterator>
#include <vantiro.hpp>

std::size_t JOBS(const vantiro::library &grid, const std::string &line);

std::size_t JOBS(const vantiro::library &grid, const std::string &line) {
  std::size_t lines = 0;
  vantiro::run run(grid);
  run.executable(line).receive([&](std::string_view) { ++lines; });
  run.execute();
  return lines;
}
