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

std::mutex mutex;
std::vector<std::string> recorded;
std::map<std::string, Behaviour> behaviours;
std::map<std::string, int> countdowns;
std::set<std::string> missing;
std::vector<std::string> fallible;
int failing_call = 0;
bool all_behind_fail = false;
bool quiet = false;

}  // namespace

void die(const std::string &message) {
  std::fprintf(stderr, "fake runtime: %s\n", message.c_str());
  std::abort();
}

void forbidden() { die("a function was called that the library has no business with"); }

void be_quiet() { quiet = true; }

void record(const std::string &line) {
  if (quiet) return;
  const std::scoped_lock lock(mutex);
  recorded.push_back(line);
}

bool fails(const std::string &function) {
  if (quiet) return false;
  const std::scoped_lock lock(mutex);
  fallible.push_back(function);
  const int behind = static_cast<int>(fallible.size()) - failing_call;
  const auto countdown = countdowns.find(function);
  const bool told = countdown != countdowns.end() && --countdown->second == 0;
  return told || (failing_call && (behind == 0 || (behind > 0 && all_behind_fail)));
}

bool is_missing(const std::string &what) { return missing.contains(what); }

Behaviour behaviour_of(const std::string &method) {
  const auto told = behaviours.find(method);
  if (told != behaviours.end()) return told->second;
  const auto any = behaviours.find("");
  return any == behaviours.end() ? Behaviour{} : any->second;
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

void returns(const std::string &method, jlong number, const std::string &text) {
  behaviours[method] = {.number = number, .text = text};
}

void returns_text(const std::string &method, const std::string &text) { returns(method, 0, text); }

void returns_null(const std::string &method) { behaviours[method] = {.null = true, .text = {}}; }

void throws(const std::string &method) { behaviours[method] = {.throws = true, .text = {}}; }

void lacks(const std::string &what) { missing.insert(what); }

void fail(const std::string &function, int nth) { countdowns[function] = nth; }

void fail_any(int nth, bool and_all_behind) {
  fallible.clear();
  failing_call = nth;
  all_behind_fail = and_all_behind;
}

std::vector<std::string> fallible_calls() { return fallible; }

void behave() {
  behaviours.clear();
  countdowns.clear();
  missing.clear();
  fail_any(0);
}

std::string pending() { return thread_env() ? thread_env()->pending : ""; }

}  // namespace fake
