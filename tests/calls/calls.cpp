#include "calls.h"

namespace {

void replace(std::string &text, const std::string &what, const char *by) {
  const std::size_t position = text.find(what);
  if (position != text.npos) text.replace(position, what.size(), by);
}

}  // namespace

std::string Call::expected(bool flag) const {
  std::string expected = record;
  replace(expected, "$flag", flag ? "true" : "false");
  replace(expected, "$other", flag ? "false" : "true");
  return expected;
}

bool Call::is(const char *function) const {
  return std::string(text).starts_with(std::string(function) + "(");
}

bool Call::is_indexed() const { return std::strchr(record, '\n'); }

char Call::result() const { return std::strchr(record, ')')[1]; }

std::vector<Call> all_calls() {
  std::vector<Call> calls = peach_calls();
  for (const Call &call : management_calls()) calls.push_back(call);
  return calls;
}
