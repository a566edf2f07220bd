#include "command.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace each {
namespace {

std::string directory(const std::string &input) {
  const auto slash = input.rfind('/');
  if (slash == std::string::npos) return ".";
  return slash == 0 ? "/" : input.substr(0, slash);
}

std::string base(const std::string &input) { return input.substr(input.rfind('/') + 1); }

std::string without_extension(const std::string &input) {
  const auto dot = input.rfind('.');
  const auto slash = input.rfind('/');
  const bool is_in_name =
      dot != std::string::npos && dot != 0 && (slash == std::string::npos || dot > slash);
  return is_in_name ? input.substr(0, dot) : input;
}

struct Replacement {
  std::string_view name;
  std::string (*of)(int job, const std::string &input);
};

constexpr std::array<Replacement, 6> replacements{{
    {"{}", [](int, const std::string &input) { return input; }},
    {"{.}", [](int, const std::string &input) { return without_extension(input); }},
    {"{/}", [](int, const std::string &input) { return base(input); }},
    {"{//}", [](int, const std::string &input) { return directory(input); }},
    {"{/.}", [](int, const std::string &input) { return without_extension(base(input)); }},
    {"{#}", [](int job, const std::string &) { return std::to_string(job); }},
}};

const Replacement *begins_with_replacement(std::string_view text) {
  for (const Replacement &replacement : replacements) {
    if (text.starts_with(replacement.name)) return &replacement;
  }
  return nullptr;
}

bool has_replacement(const std::string &word) {
  return std::any_of(replacements.begin(), replacements.end(), [&](const Replacement &one) {
    return word.find(one.name) != std::string::npos;
  });
}

std::string replaced(std::string_view word, int job, const std::string &input) {
  std::string text;
  while (!word.empty()) {
    if (const Replacement *found = begins_with_replacement(word)) {
      text += found->of(job, input);
      word.remove_prefix(found->name.size());
    } else {
      text += word.front();
      word.remove_prefix(1);
    }
  }
  return text;
}

// Between these quotes a shell takes every byte as it is.
std::string quoted(const std::string &word) {
  std::string text = "'";
  for (const char character : word) {
    text += character == '\'' ? std::string("'\\''") : std::string(1, character);
  }
  return text + "'";
}

}  // namespace

Command::Command(const Options &options) : words_(options.command), workdir_(options.workdir) {
  if (std::none_of(words_.begin(), words_.end(), has_replacement)) words_.emplace_back("{}");
}

std::string Command::line(int job, const std::string &input) const {
  std::string text;
  for (const std::string &word : words_) {
    text += (text.empty() ? "" : " ") + quoted(replaced(word, job, input));
  }
  return text;
}

std::string Command::script(int job, const std::string &input) const {
  const std::string place = workdir_.empty() ? "" : "cd -- " + quoted(workdir_) + " || exit\n";
  return place + "exec " + line(job, input) + " </dev/null\n";
}

}  // namespace each
