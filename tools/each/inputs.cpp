#include "inputs.h"

#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "options.h"

namespace each {
namespace {

struct Close {
  void operator()(std::FILE *file) const {
    if (file != stdin) std::fclose(file);
  }
};

[[noreturn]] void cannot_read(const std::string &name) {
  throw WrongCall("cannot read the inputs from " + name + ": " + std::strerror(errno));
}

}  // namespace

std::vector<std::string> read_inputs(const std::string &file, char end) {
  const bool is_standard = file == "-";
  const std::string name = is_standard ? "standard input" : file;
  const std::unique_ptr<std::FILE, Close> source(is_standard ? stdin
                                                             : std::fopen(file.c_str(), "re"));
  if (!source) cannot_read(name);
  if (isatty(fileno(source.get()))) {
    std::fputs("vantiro-each: the inputs are read from the terminal; Ctrl-D ends them\n", stderr);
  }
  std::vector<std::string> inputs;
  char *line = nullptr;
  std::size_t capacity = 0;
  ssize_t length = 0;
  while ((length = getdelim(&line, &capacity, end, source.get())) > 0) {
    std::string input(line, static_cast<std::size_t>(length));
    if (input.back() == end) input.pop_back();
    if (input.find('\0') != std::string::npos) {
      throw WrongCall("input " + std::to_string(inputs.size() + 1) + " of " + name +
                      " has a NUL byte in it, which no argument of a command can have; inputs that "
                      "end in NUL want --null");
    }
    inputs.push_back(std::move(input));
  }
  if (std::ferror(source.get())) cannot_read(name);
  std::free(line);
  return inputs;
}

}  // namespace each
