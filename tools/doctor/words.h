// What docs/hosting.md says of starts that fail. The build takes its table over, and a row that is
// named here but not there is an error of the compiler.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace doctor {

// A row: what is seen, what it means and what to do.
struct Words {
  std::string_view symptom;
  std::string_view cause;
  std::string_view cure;
};

constexpr Words words_in(std::string_view row) {
  const std::size_t first = row.find(" | ");
  const std::size_t second = row.find(" | ", first + 1);
  return {row.substr(2, first - 2), row.substr(first + 3, second - first - 3),
          row.substr(second + 3, row.size() - second - 5)};
}

inline constexpr std::string_view hosting_rows[] = {
#include "hosting_rows.inc"
};

// The row whose cause begins with that.
consteval Words words(std::string_view cause) {
  for (const std::string_view row : hosting_rows) {
    if (words_in(row).cause.starts_with(cause)) return words_in(row);
  }
  throw "docs/hosting.md has no such row";
}

inline std::optional<Words> words_of(int status) {
  for (const std::string_view row : hosting_rows) {
    if (words_in(row).symptom == std::to_string(status)) return words_in(row);
  }
  return std::nullopt;
}

}  // namespace doctor
