#pragma once

#include <benchmark/benchmark.h>
#include <map>
#include <string>
#include <vector>

namespace bench {

/// Prints the runs to the console, collects their medians, and adds the rows of the table: our time
/// and each peer's time for each work.
///
///     bench::Summary summary;
///     benchmark::RunSpecifiedBenchmarks(&summary);
///     summary.addRows();
class Summary : public benchmark::ConsoleReporter {
 public:
  Summary() : ConsoleReporter(OO_Tabular) {}

  void ReportRuns(const std::vector<Run>& runs) override;

  /// Adds all rows. Every work must have a contestant with the name `Ours`.
  void addRows() const;

 private:
  /// The median time in nanoseconds for each size.
  using Times = std::map<long, double>;
  /// The times of each contestant.
  using Contestants = std::map<std::string, Times>;

  static void addComparisons(const std::string& work, const Contestants& contestants);

  std::map<std::string, Contestants> m_Works;  ///< the contestants of each work
};

}  // namespace bench
