// What a keeper reads from its pipe: whatever comes, every message is whole, and a message between
// two others is read whatever the others are.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

extern "C" {
#include "keeper.h"
}

namespace {

std::vector<std::string> read(const std::string &bytes, std::size_t piece, std::size_t limit) {
  reader from = {};
  from.limit = limit;
  std::vector<std::string> messages;
  for (std::size_t done = 0; done < bytes.size();) {
    std::size_t size = 0;
    char *room = reader_room(&from, &size);
    if (size == 0) abort();
    size = std::min({size, piece, bytes.size() - done});
    memcpy(room, bytes.data() + done, size);
    reader_add(&from, size);
    done += size;
    for (message found; reader_next(&from, &found);) {
      if (found.length == 0 || found.fields[found.length - 1] != '\0') abort();
      job described;
      if (!job_read(&found, &described) && !described.command[0]) abort();
      free(described.command);
      free(described.environment);
      outcome end;
      outcome_read(&found, 1, &end);
      messages.emplace_back(found.fields, found.length);
    }
  }
  free(from.bytes);
  return messages;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  const std::string bytes(reinterpret_cast<const char *>(data), size);
  const std::string ping("version=1\0kind=ping\0", 20), begin(2, '\0'), end(1, '\0');
  const auto whole = read(bytes, 1 << 20, 1 << 20);
  if (read(bytes, 3, 1 << 20) != whole) abort();
  for (const std::size_t limit : {std::size_t{1} << 20, std::size_t{4096}}) {
    if (read(bytes + begin + ping + end, 100, limit).back() != ping) abort();
  }
  return 0;
}
