#include "zip_file.h"

#include <algorithm>
#include <cstdint>

#include "files.h"

namespace doctor {
namespace {

const std::string local_mark = "PK\3\4";
const std::string directory_mark = "PK\1\2";
const std::string end_mark = "PK\5\6";
constexpr std::uint64_t local_size = 30;
constexpr std::uint64_t directory_size = 46;
constexpr std::uint64_t end_size = 22;

std::uint32_t number(const std::string &bytes, std::size_t at, int count) {
  std::uint32_t value = 0;
  for (int i = count - 1; i >= 0; --i) {
    value = value << 8 | static_cast<unsigned char>(bytes[at + static_cast<std::size_t>(i)]);
  }
  return value;
}

}  // namespace

ZipFile read_zip(const std::string &path, const std::string &entry) {
  ZipFile result;
  const File file(path);
  if (file.size() == 0) {
    result.fault = "is empty";
    return result;
  }
  const bool starts_like_one = file.bytes(0, 4) == local_mark;
  result.fault = starts_like_one ? "is damaged or truncated" : "is no zip archive";

  // The end record is followed by a comment of at most 65535 bytes.
  const std::uint64_t tail = std::min<std::uint64_t>(file.size(), end_size + 0xffff);
  const std::string last = file.bytes(file.size() - tail, tail).value_or("");
  const std::size_t end = last.rfind(end_mark);
  if (end == last.npos || end + end_size > last.size()) return result;

  // Something else may stand in front of the archive, so that its offsets count from further on.
  result.fault = "is damaged or truncated";
  const std::uint64_t directory_end = file.size() - tail + end;
  std::uint64_t at = directory_end - number(last, end + 12, 4);
  const std::uint64_t origin = at - number(last, end + 16, 4);
  while (at != directory_end) {
    const auto head = file.bytes(at, directory_size);
    if (!head || !head->starts_with(directory_mark)) return result;
    const std::uint64_t name_length = number(*head, 28, 2);
    const auto name = file.bytes(at + directory_size, name_length);
    if (!name) return result;
    if (*name == entry) {
      const auto local = file.bytes(origin + number(*head, 42, 4), local_size);
      if (!local || !local->starts_with(local_mark)) return result;
      result.has_entry = true;
    }
    at += directory_size + name_length + number(*head, 30, 2) + number(*head, 32, 2);
  }
  result.fault.clear();
  return result;
}

}  // namespace doctor
