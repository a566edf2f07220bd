#include "report.h"

#include <algorithm>
#include <regex>

namespace doctor {
namespace {

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

// The page's text without the marks of code and links.
std::string plain(std::string_view text) {
  static const std::regex marks("`|\\[([^\\]]*)\\]\\([^)]*\\)");
  return std::regex_replace(std::string(text), marks, "$1");
}

// Of several lines each is written on one of its own.
void write(std::ostream &out, const std::string &indent, const std::string &name,
           const nlohmann::ordered_json &fact) {
  out << indent << name << ':';
  if (fact.is_object()) {
    out << '\n';
    for (const auto &[key, value] : fact.items()) write(out, indent + "  ", key, value);
    return;
  }
  const std::string text = fact.get<std::string>();
  if (text.find('\n') == text.npos) {
    out << ' ' << visible(text) << '\n';
    return;
  }
  out << '\n';
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    out << indent << "  " << visible(line) << '\n';
  }
}

}  // namespace

void Report::trouble(const Words &words, const std::string &detail) {
  trouble(plain(words.cause) + (detail.empty() ? "" : ": " + detail), plain(words.cure));
}

void Report::add(Json &findings, const std::string &cause, const std::string &cure) {
  const Json finding = {{"cause", cause}, {"cure", cure}};
  if (std::find(findings.begin(), findings.end(), finding) == findings.end()) {
    findings.push_back(finding);
  }
}

void Report::write_json(std::ostream &out) const {
  Json json = {{"succeeds", succeeds_}, {"verdict", verdict_}};
  json.update(facts_);
  json["notes"] = notes_;
  json["troubles"] = troubles_;
  // Names of files need not be UTF-8.
  out << json.dump(2, ' ', false, Json::error_handler_t::replace) << '\n';
}

void Report::write_text(std::ostream &out, bool verbose) const {
  out << "An initialiser would " << (succeeds_ ? "succeed" : "fail")
      << (succeeds_ || verdict_.empty() ? "" : ": " + visible(verdict_)) << ".\n";
  for (const char *const name : {"library", "runtime"}) {
    if (facts_.contains(name)) write(out, "  ", name, facts_[name]);
  }
  for (const auto &[kind, findings] :
       {std::pair("Trouble", troubles_), std::pair("Note", notes_)}) {
    for (const Json &finding : findings) {
      out << '\n' << kind << ": " << visible(finding["cause"]) << ".\n";
      out << "  To do: " << visible(finding["cure"]) << ".\n";
    }
  }
  if (verbose) {
    out << '\n';
    for (const auto &[name, fact] : facts_.items()) write(out, "", name, fact);
  } else if (!succeeds_) {
    out << "\nvantiro-doctor --verbose tells all that was found.\n";
  }
}

}  // namespace doctor
