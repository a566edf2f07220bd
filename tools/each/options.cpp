#include "options.h"

#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cerrno>
#include <charconv>
#include <climits>
#include <cstdlib>
#include <cstring>

#include "inputs.h"

namespace fs = std::filesystem;

namespace each {
namespace {

constexpr int most_jobs = 1000;

const char *const description =
    "Runs COMMAND once for each input, several at a time, on the grid that libvantiro.so finds.\n"
    "Inputs are the lines of standard input, the arguments after ':::', or the lines of FILE after "
    "'::::'.";

const char *const footer =
    R"(Replacement strings in COMMAND and its ARGUMENTs; without any, {} is added as the last one:
  {}    the input
  {.}   the input without its extension
  {/}   its last part
  {//}  its directory
  {/.}  its last part without its extension
  {#}   the number of the job, from 1

No shell reads COMMAND; for pipes and the like it is: sh -c 'LINE' sh {}, where "$1" is the input.
What a job prints comes byte for byte when it ends, and is never mixed with that of another one.
A signal INT (Ctrl-C) or TERM stops the jobs, after what had ended is printed; a second one ends
the program at once.

Exit status:
  0      all jobs succeeded
  1-100  so many jobs failed
  101    more than 100 jobs failed
  255    the call was wrong, or the run failed
  129, 130, 143  stopped by HUP, INT or TERM

Examples:
  seq 10 | vantiro-each sh -c 'echo $(({} * {}))'
  vantiro-each --transfer wc -w {} ::: *.txt
  find . -name '*.png' -print0 | vantiro-each -0 --workdir . optipng {}
  vantiro-each -k --tag --timeout 60 ./simulate --seed {} :::: seeds)";

class Form : public CLI::Formatter {
 public:
  std::string make_usage(const CLI::App *, std::string) const override {
    return "Usage: vantiro-each [OPTION]... [--] COMMAND [ARGUMENT]... [::: INPUT... | :::: "
           "FILE]\n";
  }
};

// The arguments of the program, up to what names the inputs, and that.
struct Split {
  int own = 0;
  std::string separator{};
  std::vector<std::string> after{};
};

Split split(int count, char **arguments) {
  Split split{.own = count};
  for (int i = 1; i < count; ++i) {
    const std::string word = arguments[i];
    if (word != ":::" && word != "::::") continue;
    if (split.separator.empty()) {
      split.own = i;
      split.separator = word;
    } else {
      throw WrongCall("there can be one " + split.separator +
                      " only; combinations of several sources are not made");
    }
  }
  for (int i = split.own + 1; i < count; ++i) split.after.emplace_back(arguments[i]);
  return split;
}

Halt read_halt(const std::string &text) {
  if (text == "never") return {};
  const auto equals = text.find('=');
  const std::string when = text.substr(0, equals);
  const char *const digits =
      text.c_str() + (equals == std::string::npos ? text.size() : equals + 1);
  const char *const end = text.c_str() + text.size();
  Halt halt;
  const auto number = std::from_chars(digits, end, halt.after);
  if (when == "now,fail") halt.of = Halt::Count::failed;
  if (when == "now,success") halt.of = Halt::Count::succeeded;
  if (when == "now,done") halt.of = Halt::Count::ended;
  if (halt.of == Halt::Count::never || number.ec != std::errc() || number.ptr != end ||
      halt.after < 1) {
    throw WrongCall("--halt is never, now,fail=N, now,success=N or now,done=N, not " + text);
  }
  return halt;
}

// The program after the options. An option that is not known is not one of the command.
std::vector<std::string> command_of(const CLI::App &app) {
  std::vector<std::string> words = app.remaining();
  if (!words.empty() && words.front() == "--") {
    words.erase(words.begin());
  } else if (!words.empty() && words.front().starts_with('-')) {
    throw WrongCall("there is no option " + words.front() +
                    " (-- goes before a command like that)");
  }
  if (words.empty()) throw WrongCall("there is no command");
  return words;
}

fs::path found(const std::string &path, int access_wanted, const char *trouble) {
  if (access(path.c_str(), access_wanted) != 0) {
    throw WrongCall(trouble + path + ": " + std::strerror(errno));
  }
  return fs::absolute(path);
}

// Jobs know their files by their last names.
void name_files(Options &options) {
  for (std::string &input : options.inputs) {
    options.files.push_back(found(input, R_OK, "cannot read "));
    input = options.files.back().filename();
  }
}

// A run replaces what an earlier one left in its directory, which must not be somebody's own.
void check_results(const fs::path &directory) {
  std::error_code problem;
  const bool is_there = fs::exists(directory, problem);
  if (is_there && !fs::is_directory(directory, problem)) {
    throw WrongCall("--results needs a directory, this is none: " + directory.string());
  }
  if (is_there && !fs::is_empty(directory, problem)) {
    throw WrongCall("--results needs a new or empty directory, there are files in " +
                    directory.string());
  }
}

}  // namespace

Options read_options(int count, char **arguments) {
  Options options;
  std::string source = "-", halt = "never";
  int seconds = 0;
  bool ended_by_nul = false;

  CLI::App app(description, "vantiro-each");
  app.formatter(std::make_shared<Form>());
  app.footer(footer);
  app.prefix_command();
  app.add_option(
         "-j,--jobs", options.jobs,
         "how many run at once, up to 1000; without it, as the settings say, or else one for "
         "each processor")
      ->type_name("N")
      ->check(CLI::Range(1, most_jobs).description(""));
  CLI::Option *const arg_file =
      app.add_option("-a,--arg-file", source, "read the inputs from FILE, - for standard input")
          ->type_name("FILE");
  app.add_flag("-0,--null", ended_by_nul, "inputs of a file end in NUL and not in a newline");
  app.add_flag("-k,--keep-order", options.keep_order, "print in the order of the inputs");
  app.add_flag("--tag", options.tag, "begin each printed line with the input and a tabulator");
  app.add_option("--timeout", seconds, "kill a job that runs longer; it has failed")
      ->type_name("SECONDS")
      ->check(CLI::Range(1, INT_MAX).description(""));
  app.add_option("--halt", halt,
                 "stop all when N jobs failed, succeeded or ended: now,fail=N, now,success=N, "
                 "now,done=N; or never, the default")
      ->type_name("WHEN");
  app.add_flag("--transfer", options.transfer,
               "each input is a file; its job gets a copy, and {} is the copy's name");
  app.add_option("--workdir", options.workdir,
                 "run the jobs in DIR; without it each has an empty directory of its own")
      ->type_name("DIR");
  app.add_option("--results", options.results,
                 "keep what job N prints and writes in DIR/job-N, besides printing; DIR is new or "
                 "empty")
      ->type_name("DIR");
  app.add_option("--tmpdir", options.tmpdir, "for files that wait to be printed, not $TMPDIR")
      ->type_name("DIR");
  app.add_option("--settings", options.settings,
                 "the grid's settings; without it the file that $VANTIRO_SETTINGS names")
      ->type_name("FILE");
  app.add_flag("--dry-run", options.dry_run, "print the commands, and run none");
  app.set_version_flag("-V,--version", VANTIRO_VERSION_TEXT);

  const Split words = split(count, arguments);
  try {
    app.parse(words.own, arguments);
  } catch (const CLI::ParseError &error) {
    if (error.get_exit_code() != 0) throw WrongCall(error.what());
    std::exit(app.exit(error));
  }

  options.command = command_of(app);
  options.timeout = std::chrono::seconds(seconds);
  options.halt = read_halt(halt);
  // A program or a directory that is given by its path is not in the directories of the jobs.
  if (options.command[0].find('/') != std::string::npos &&
      options.command[0].find('{') == std::string::npos) {
    options.command[0] = found(options.command[0], X_OK, "cannot run ");
  }
  if (!options.workdir.empty()) options.workdir = found(options.workdir, X_OK, "cannot use ");
  if (!options.workdir.empty() && options.transfer) {
    throw WrongCall("--transfer is for jobs with directories of their own, not for --workdir");
  }
  if (!options.results.empty()) check_results(options.results);

  if (!words.separator.empty() && arg_file->count() > 0) {
    throw WrongCall("the inputs come from --arg-file or from " + words.separator +
                    ", not from both");
  }
  if (words.separator == ":::") {
    options.inputs = words.after;
  } else {
    if (!words.separator.empty()) {
      if (words.after.size() != 1) throw WrongCall(":::: takes one file");
      source = words.after[0];
    }
    options.inputs = read_inputs(source, ended_by_nul ? '\0' : '\n');
  }
  if (options.transfer) name_files(options);
  return options;
}

}  // namespace each
