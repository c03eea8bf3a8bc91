#pragma once

#include <benchmark/benchmark.h>
#include <map>
#include <string>
#include <vector>

namespace bench {

/// The usual report, and from it two tables: each of our benchmarks beside its peers, named
/// "subject/peer/size", and the ratio from one size to the next of those named "growth: ...".
class Summary : public benchmark::ConsoleReporter {
 public:
  Summary() : ConsoleReporter(OO_Tabular) {}

  void ReportRuns(const std::vector<Run>& runs) override;

  /// Prints the tables.
  void print() const;

 private:
  /// Median CPU time in nanoseconds by size, under "subject/peer".
  using Times = std::map<std::string, std::map<long, double>>;

  void printComparisons() const;
  void printGrowth() const;

  Times m_Times;
};

}  // namespace bench
