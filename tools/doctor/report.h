// What was found out, told once and written in two ways: as text for a person and as JSON.
#pragma once

#include <ostream>
#include <string>
#include <utility>
#include <vector>

namespace doctor {

using Row = std::vector<std::string>;
using Facts = std::vector<std::pair<std::string, std::string>>;

class Report {
 public:
  // Facts stand in the order in which they were first told, under the names that the text uses as
  // headings: one fact, one of several under a heading, or a row of a list.
  void tell(const std::string &heading, const std::string &fact) { section(heading).fact = fact; }
  void tell(const std::string &heading, const std::string &name, const std::string &fact) {
    section(heading).facts.emplace_back(name, fact);
  }
  void add_row(const std::string &heading, const Row &row) { section(heading).rows.push_back(row); }

  // What keeps an initialiser from succeeding, or is suspected to. Said once, however many checks
  // come upon it.
  void trouble(const std::string &cause, const std::string &cure) { add(troubles_, cause, cure); }

  // What does no harm now and may do so later.
  void note(const std::string &cause, const std::string &cure) { add(notes_, cause, cure); }

  bool has_trouble() const { return !troubles_.empty(); }

  // An initialiser would succeed: what was suspected does no harm now.
  void succeed();

  void write_json(std::ostream &out) const;
  void write_text(std::ostream &out) const;

 private:
  struct Section {
    std::string heading;
    std::string fact;
    Facts facts;
    std::vector<Row> rows;
  };
  struct Finding {
    std::string cause;
    std::string cure;
  };

  Section &section(const std::string &heading);
  static void add(std::vector<Finding> &list, const std::string &cause, const std::string &cure);

  std::vector<Section> sections_;
  std::vector<Finding> notes_;
  std::vector<Finding> troubles_;
  bool succeeds_ = false;
};

}  // namespace doctor
