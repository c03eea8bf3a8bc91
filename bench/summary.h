#pragma once

#include <benchmark/benchmark.h>
#include <map>
#include <string>
#include <vector>

namespace bench {

/// Collects medians and makes the rows of the table from them: our time for each work beside each
/// peer's, and the exponent with which a work's cost grows.
class Summary : public benchmark::ConsoleReporter {
 public:
  Summary() : ConsoleReporter(OO_Tabular) {}

  void ReportRuns(const std::vector<Run>& runs) override;

  void addRows() const;

 private:
  /// Median time in nanoseconds by size, under contestants, under works.
  using Times = std::map<long, double>;
  using Contestants = std::map<std::string, Times>;

  static void addComparisons(const std::string& work, const Contestants& contestants);
  static void addGrowth(const std::string& work, const Times& times);

  std::map<std::string, Contestants> m_Works;
};

}  // namespace bench
