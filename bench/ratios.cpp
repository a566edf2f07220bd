#include "ratios.h"

#include <cstdio>

void Ratios::ReportRuns(const std::vector<Run> &runs) {
  for (const Run &run : runs) {
    if (run.error_occurred) {
      std::fprintf(stderr, "%s: %s\n", run.benchmark_name().c_str(), run.error_message.c_str());
    } else if (run.aggregate_name == "median") {
      medians_[run.run_name.function_name] = run.GetAdjustedCPUTime();
    }
  }
}

void Ratios::Finalize() {
  std::printf("%-20s %12s %12s %8s\n", "call", "library, ns", "by hand, ns", "ratio");
  for (const auto &[name, library] : medians_) {
    const std::size_t end = name.rfind("/library");
    if (end == name.npos) continue;
    const std::string call = name.substr(0, end);
    const double by_hand = medians_[call + "/by_hand"];
    std::printf("%-20s %12.0f %12.0f %8.3f\n", call.c_str(), library, by_hand, library / by_hand);
  }
}
