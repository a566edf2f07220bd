// The keeper's side of the protocol: what it reads, whatever comes, and what it writes.
#include <gtest/gtest.h>

#include <cstring>
#include <fstream>
#include <string>
#include <vector>

extern "C" {
#include "keeper.h"
}

namespace {

std::string unescaped(const std::string &text) {
  std::string bytes;
  for (std::size_t i = 0; i < text.size(); i++) {
    if (text[i] != '\\') {
      bytes += text[i];
    } else if (text[++i] == 'x') {
      bytes += static_cast<char>(std::stoi(text.substr(i + 1, 2), nullptr, 16));
      i += 2;
    } else {
      bytes += text[i] == 'n' ? '\n' : '\0';
    }
  }
  return bytes;
}

struct Row {
  std::string bytes;
  bool written = false;
  // As the table has them, without escapes.
  std::vector<std::string> messages;
};

std::vector<Row> table() {
  std::vector<Row> rows;
  std::ifstream file(MESSAGES);
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with("<> ")) rows.push_back({unescaped(line.substr(3)), true, {}});
    if (line.starts_with("< ")) rows.push_back({unescaped(line.substr(2)), false, {}});
    if (line.starts_with("= ")) rows.back().messages.push_back(unescaped(line.substr(2)));
  }
  return rows;
}

std::string text(const message &read) {
  std::string all;
  for (const char *field = nullptr; (field = message_next(&read, field));) {
    all += (all.empty() ? "" : "|") + std::string(field);
  }
  const char *trouble = message_trouble(&read);
  return trouble ? all + " ! " + trouble : all;
}

// Reads as a pipe gives it: so many bytes at a time.
std::vector<std::string> read_in_pieces(const std::string &bytes, std::size_t piece,
                                        std::size_t limit = 1 << 20) {
  reader from = {};
  from.limit = limit;
  std::vector<std::string> messages;
  for (std::size_t done = 0; done < bytes.size();) {
    std::size_t size = 0;
    char *room = reader_room(&from, &size);
    size = std::min({size, piece, bytes.size() - done});
    memcpy(room, bytes.data() + done, size);
    reader_add(&from, size);
    done += size;
    for (message read; reader_next(&from, &read);) messages.push_back(text(read));
  }
  free(from.bytes);
  return messages;
}

std::string field(const std::string &text) { return text + '\0'; }

}  // namespace

TEST(Messages, AreReadAsTheTableSays) {
  const std::vector<Row> rows = table();
  ASSERT_GT(rows.size(), 20u);
  for (const Row &row : rows) {
    for (const std::size_t piece : {1, 2, 3, 7, 4096}) {
      EXPECT_EQ(read_in_pieces(row.bytes, piece), row.messages) << "in pieces of " << piece;
    }
  }
}

TEST(Messages, AreWrittenAsTheTableSays) {
  int written = 0;
  for (const Row &row : table()) {
    if (!row.written) continue;
    written++;
    answer sent;
    std::string rest = row.messages[0] + "|";
    for (std::string::size_type end; (end = rest.find('|')) != std::string::npos;) {
      const std::string pair = rest.substr(0, end), name = pair.substr(0, pair.find('='));
      const std::string value = pair.substr(name.size() + 1);
      if (name == "kind") answer_begin(&sent, value.c_str());
      if (name != "kind" && name != "version") answer_text(&sent, name.c_str(), value.c_str());
      rest.erase(0, end + 1);
    }
    answer_end(&sent);
    EXPECT_EQ(std::string(sent.bytes, sent.length), row.bytes);
  }
  EXPECT_GT(written, 4);
}

TEST(Messages, ThatAreTooLongAreToldAndEnd) {
  const std::string head = field("version=1") + field("kind=run") + field("job=5");
  const std::string next = std::string(2, '\0') + field("version=1") + field("kind=pong") + '\0';
  for (const std::size_t length : {8000, 9000, 50000}) {
    for (const std::size_t piece : {1, 511, 5000}) {
      const auto messages = read_in_pieces(
          head + field("argument=" + std::string(length, 'x')) + '\0' + next, piece, 8192);
      ASSERT_EQ(messages.size(), 2u);
      EXPECT_EQ(messages[0].find("version=1|kind=run|job=5"), 0u);
      EXPECT_EQ(messages[1], "version=1|kind=pong");
      EXPECT_EQ(messages[0].ends_with("! it is too long"), length > 8100) << length;
    }
  }
  EXPECT_EQ(read_in_pieces(std::string(20000, 'x') + std::string(2, '\0') + next, 100, 8192).back(),
            "version=1|kind=pong");
}

TEST(Messages, ToBeSentAreCutToWhatGoesInOnePiece) {
  const std::string why(10000, 'x');
  outcome end = {};
  end.ending = FAILED;
  end.why = why.c_str();
  answer sent;
  outcome_write(&sent, 7, &end);
  EXPECT_LE(sent.length, sizeof sent.bytes);
  const auto messages = read_in_pieces(std::string(sent.bytes, sent.length), 4096);
  ASSERT_EQ(messages.size(), 1u);
  EXPECT_TRUE(messages[0].ends_with("xxx"));
}

TEST(Messages, HaveNumbersOf64BitsOrNone) {
  const auto number = [](const std::string &value) -> std::string {
    const std::string bytes = field("job=" + value);
    const message read = {bytes.data(), bytes.size(), false};
    int64_t found = 0;
    return message_number(&read, "job", &found) ? std::to_string(found) : "none";
  };
  EXPECT_EQ(number("4294967297"), "4294967297");
  EXPECT_EQ(number("-9223372036854775808"), "-9223372036854775808");
  for (const char *wrong : {"", " 1", "+1", "1 ", "0x1", "1e3", "9223372036854775808", "-", "1-"}) {
    EXPECT_EQ(number(wrong), "none") << wrong;
  }
}

TEST(Messages, TellHowAJobEnded) {
  const outcome told = {LOST, 137, 9, int64_t{1} << 40, int64_t{1} << 41, 5, ""};
  answer sent;
  outcome_write(&sent, 7, &told);
  const message read = {sent.bytes + 2, sent.length - 3, false};
  outcome end = {};
  ASSERT_TRUE(outcome_read(&read, 7, &end));
  EXPECT_EQ(
      std::tie(end.ending, end.status, end.signal, end.cpu_ms, end.wall_ms, end.peak_kb),
      std::tie(told.ending, told.status, told.signal, told.cpu_ms, told.wall_ms, told.peak_kb));
  EXPECT_FALSE(outcome_read(&read, 8, &end)) << "of another job";
}

TEST(Messages, DescribeAJobOrSayWhyNot) {
  const std::string whole = field("version=1") + field("kind=run") + field("job=5") +
                            field("directory=/d") + field("timeout_ms=4294967296") +
                            field("variable=A=b=c") + field("argument=x") + field("argument=");
  const auto described = [](const std::string &bytes, job *found) -> std::string {
    free(found->environment);
    free(found->command);
    const message read = {bytes.data(), bytes.size(), false};
    const char *why = job_read(&read, found);
    return why ? why : "";
  };
  job found = {};
  ASSERT_EQ(described(whole, &found), "");
  EXPECT_EQ(found.timeout_ms, int64_t{1} << 32);
  EXPECT_STREQ(found.environment[0], "A=b=c");
  EXPECT_STREQ(found.command[1], "");
  EXPECT_EQ(found.command[2], nullptr);
  for (const char *part : {"job=5", "directory=/d", "timeout_ms=4294967296", "kind=run"}) {
    std::string without = whole;
    without.erase(without.find(part), strlen(part) + 1);
    EXPECT_NE(described(without, &found), "") << "without " << part;
  }
  EXPECT_EQ(described(whole.substr(0, whole.find("argument")), &found), "it has no command");
  EXPECT_NE(described(whole + field("launcher=srun"), &found), "") << "a launcher without a grace";
  EXPECT_NE(described("", &found), "");
}
