// The script of the fake runtime, and its record.
#include <cstdio>
#include <cstdlib>
#include <map>
#include <mutex>
#include <set>

#include "fake_jvm.h"
#include "fake_state.h"

namespace fake {
namespace {

std::recursive_mutex mutex;
std::vector<std::string> recorded;
std::map<std::string, Behaviour> behaviours;
std::map<std::string, int> countdowns;
std::set<std::string> missing;
int calls = 0;
int failing_call = 0;

}  // namespace

void die(const std::string &message) {
  std::fprintf(stderr, "fake runtime: %s\n", message.c_str());
  std::abort();
}

void forbidden() { die("a function was called that the library has no business with"); }

void record(const std::string &line) {
  const std::scoped_lock lock(mutex);
  recorded.push_back(line);
}

bool fails(const std::string &function) {
  const std::scoped_lock lock(mutex);
  const auto countdown = countdowns.find(function);
  const bool told = countdown != countdowns.end() && --countdown->second == 0;
  return ++calls == failing_call || told;
}

bool is_missing(const std::string &what) {
  const std::scoped_lock lock(mutex);
  return missing.contains(what);
}

Behaviour behaviour_of(const std::string &method) {
  const std::scoped_lock lock(mutex);
  const auto told = behaviours.find(method);
  return told == behaviours.end() ? Behaviour{} : told->second;
}

std::string trace(const std::string &start) {
  const std::scoped_lock lock(mutex);
  std::string lines;
  for (const std::string &line : recorded) {
    if (line.starts_with(start)) lines += line + "\n";
  }
  recorded.clear();
  return lines;
}

void returns(const std::string &method, jlong number) {
  behaviours[method] = {.number = number, .text = {}};
}

void returns_text(const std::string &method, const std::string &text) {
  behaviours[method] = {.text = text};
}

void returns_null(const std::string &method) { behaviours[method] = {.null = true, .text = {}}; }

void throws(const std::string &method) { behaviours[method] = {.throws = true, .text = {}}; }

void lacks(const std::string &what) { missing.insert(what); }

void fail(const std::string &function, int nth) { countdowns[function] = nth; }

void fail_any(int nth) {
  calls = 0;
  failing_call = nth;
}

int fallible_calls() { return calls; }

void behave() {
  behaviours.clear();
  countdowns.clear();
  missing.clear();
  fail_any(0);
}

std::string pending() { return thread_env() ? thread_env()->pending : ""; }

}  // namespace fake
