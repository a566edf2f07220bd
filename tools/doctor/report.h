// What was found out, told once and written in two ways: as text for a person and as JSON.
#pragma once

#include <nlohmann/json.hpp>
#include <ostream>
#include <string>

#include "words.h"

namespace doctor {

class Report {
 public:
  // One fact, one of several under a heading, or one of a list. They stand in the order in which
  // they were first told.
  void tell(const std::string &heading, const std::string &fact) { facts_[heading] = fact; }
  void tell(const std::string &heading, const std::string &name, const std::string &fact) {
    facts_[heading][name] = fact;
  }

  // What keeps an initialiser from succeeding. Said once, however many checks come upon it.
  void trouble(const std::string &cause, const std::string &cure) { add(troubles_, cause, cure); }
  // In the words of docs/hosting.md, with what was seen here.
  void trouble(const Words &words, const std::string &detail);
  // What does no harm now and may do so later.
  void note(const std::string &cause, const std::string &cure) { add(notes_, cause, cure); }

  bool has_trouble() const { return !troubles_.empty(); }

  // Whether an initialiser would succeed, and what it gave.
  void conclude(bool succeeds, const std::string &verdict) {
    succeeds_ = succeeds;
    verdict_ = verdict;
  }

  void write_json(std::ostream &out) const;
  // The verdict and what is to be done; with all facts only when they are asked for.
  void write_text(std::ostream &out, bool verbose) const;

 private:
  using Json = nlohmann::ordered_json;

  static void add(Json &findings, const std::string &cause, const std::string &cure);

  Json facts_ = Json::object();
  Json notes_ = Json::array();
  Json troubles_ = Json::array();
  bool succeeds_ = false;
  std::string verdict_;
};

}  // namespace doctor
