// Runs a program over many inputs on the grid, in the manner of GNU parallel.
#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <exception>
#include <string>

#include "command.h"
#include "execution.h"
#include "options.h"
#include "printer.h"

namespace {

constexpr int not_run = 255;

// What is printed must not get into a file that the Java machine opens in the place of a closed
// one.
void open_standard_files() {
  int file = 0;
  do {
    file = open("/dev/null", O_RDWR);
  } while (file >= 0 && file <= STDERR_FILENO);
  close(file);
}

void print_commands(const each::Options &options) {
  const each::Command command(options);
  int job = 0;
  for (const std::string &input : options.inputs) {
    const std::string line = command.line(++job, input) + "\n";
    each::write_all(STDOUT_FILENO, line.data(), line.size());
  }
}

}  // namespace

int main(int count, char **arguments) {
  try {
    open_standard_files();
    const each::Options options = each::read_options(count, arguments);
    if (!options.dry_run && !options.inputs.empty()) return each::execute(options);
    print_commands(options);
    return 0;
  } catch (const each::WrongCall &problem) {
    std::fprintf(stderr, "vantiro-each: %s\nTry vantiro-each --help.\n", problem.what());
  } catch (const std::exception &problem) {
    std::fprintf(stderr, "vantiro-each: %s\n", problem.what());
  }
  return not_run;
}
