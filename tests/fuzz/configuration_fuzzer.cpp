// VantiroDLL.conf, read by the library and once more in the plainest way.
#include <algorithm>
#include <fstream>

#include "fuzzing.h"
#include "host/discovery.h"

namespace {

// The token at the start of `text`, and `text` becomes what is behind it.
std::string_view next_token(std::string_view &text) {
  const std::size_t start = std::min(text.find_first_not_of("=\n\r"), text.size());
  const std::size_t end = std::min(text.find_first_of("=\n\r", start), text.size());
  const std::string_view token = text.substr(start, end - start);
  text.remove_prefix(end);
  return token;
}

std::string_view expected(std::string_view file) {
  while (!file.empty()) {
    const std::size_t line_end = file.substr(0, 4095).find('\n');
    std::string_view line = file.substr(0, line_end == file.npos ? 4095 : line_end + 1);
    file.remove_prefix(line.size());
    line = line.substr(0, line.find('\0'));
    const std::string_view key = next_token(line);
    const std::string_view value = next_token(line);
    if (key == "JVMPATH" && !value.empty()) return value;
  }
  return {};
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  static const Scratch scratch;
  const std::string_view text(reinterpret_cast<const char *>(data), size);
  std::ofstream("VantiroDLL.conf", std::ios::trunc) << text;
  PathBuffer path;
  const bool found = vantiro::find_in_configuration({path.text}, ".");
  REQUIRE(path.checked() == expected(text));
  REQUIRE(found == !path.checked().empty());
  return 0;
}
