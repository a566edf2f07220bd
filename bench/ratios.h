// A report of pairs: the median of what runs as "NAME/library" over that of "NAME/by_hand".
#pragma once

#include <benchmark/benchmark.h>

#include <map>
#include <string>

class Ratios : public benchmark::BenchmarkReporter {
 public:
  bool ReportContext(const Context &) override { return true; }
  void ReportRuns(const std::vector<Run> &runs) override;
  void Finalize() override;

 private:
  std::map<std::string, double> medians_;
};
