#include "report.h"

#include <algorithm>
#include <nlohmann/json.hpp>

namespace doctor {
namespace {

using Json = nlohmann::ordered_json;

// Control characters would act on the terminal instead of being seen.
std::string visible(const std::string &text) {
  static const char digits[] = "0123456789abcdef";
  std::string result;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte >= 0x20 && byte != 0x7f) {
      result += c;
    } else {
      result += std::string("\\x") + digits[byte >> 4] + digits[byte & 15];
    }
  }
  return result;
}

void write_lines(std::ostream &out, const char *indent, const std::string &text) {
  for (std::size_t start = 0; start < text.size();) {
    const std::size_t end = std::min(text.find('\n', start), text.size());
    out << indent << visible(text.substr(start, end - start)) << '\n';
    start = end + 1;
  }
}

void write_fact(std::ostream &out, const std::string &name, const std::string &fact) {
  if (fact.find('\n') == fact.npos) {
    out << "  " << name << ": " << visible(fact) << '\n';
  } else {
    out << "  " << name << ":\n";
    write_lines(out, "    ", fact);
  }
}

void write_row(std::ostream &out, const Row &row) {
  const char *before = "  ";
  for (const std::string &field : row) {
    out << before << visible(field);
    before = ": ";
  }
  out << '\n';
}

}  // namespace

Report::Section &Report::section(const std::string &heading) {
  const auto found = std::find_if(sections_.begin(), sections_.end(),
                                  [&](const Section &s) { return s.heading == heading; });
  if (found != sections_.end()) return *found;
  sections_.push_back({heading, "", {}, {}});
  return sections_.back();
}

void Report::add(std::vector<Finding> &list, const std::string &cause, const std::string &cure) {
  const auto same = [&](const Finding &f) { return f.cause == cause && f.cure == cure; };
  if (std::none_of(list.begin(), list.end(), same)) list.push_back({cause, cure});
}

void Report::succeed() {
  succeeds_ = true;
  for (const Finding &suspect : troubles_) note(suspect.cause, suspect.cure);
  troubles_.clear();
}

void Report::write_json(std::ostream &out) const {
  Json json = {{"succeeds", succeeds_}};
  for (const Section &section : sections_) {
    if (!section.rows.empty()) {
      json[section.heading] = section.rows;
    } else if (section.facts.empty()) {
      json[section.heading] = section.fact;
    }
    for (const auto &[name, fact] : section.facts) json[section.heading][name] = fact;
  }
  const auto add_findings = [&](const char *name, const std::vector<Finding> &findings) {
    json[name] = Json::array();
    for (const Finding &finding : findings) {
      json[name].push_back({{"cause", finding.cause}, {"cure", finding.cure}});
    }
  };
  add_findings("notes", notes_);
  add_findings("troubles", troubles_);
  // Names of files need not be UTF-8.
  out << json.dump(2, ' ', false, Json::error_handler_t::replace) << '\n';
}

void Report::write_text(std::ostream &out) const {
  for (const Section &section : sections_) {
    if (section.facts.empty() && section.rows.empty()) {
      out << section.heading << ": " << visible(section.fact) << '\n';
      continue;
    }
    out << section.heading << '\n';
    for (const auto &[name, fact] : section.facts) write_fact(out, name, fact);
    for (const Row &row : section.rows) write_row(out, row);
  }
  out << '\n';
  const auto write_findings = [&](const char *kind, const std::vector<Finding> &findings) {
    for (const auto &[cause, cure] : findings) {
      out << kind << ": " << visible(cause) << "; " << visible(cure) << ".\n";
    }
  };
  write_findings("note", notes_);
  write_findings("trouble", troubles_);
  if (succeeds_) out << "An initialiser would succeed.\n";
}

}  // namespace doctor
