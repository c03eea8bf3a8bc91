#include "summary.h"

#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <string_view>

namespace bench {

namespace {

constexpr const char* Ours = "/zvkconfig";
constexpr const char* Growth = "growth: ";

}  // namespace

void Summary::ReportRuns(const std::vector<Run>& runs) {
  for (const Run& run : runs) {
    if (run.run_type != Run::RT_Aggregate || run.aggregate_name != "median") {
      continue;
    }
    const std::string& name = run.run_name.function_name;
    const long size = std::strtol(run.run_name.args.c_str(), nullptr, 10);
    m_Times[name][size] = run.GetAdjustedCPUTime();
  }
  ConsoleReporter::ReportRuns(runs);
}

void Summary::print() const {
  printComparisons();
  printGrowth();
}

void Summary::printComparisons() const {
  std::printf("\n%-14s %-14s %9s %14s %14s %8s\n", "subject", "peer", "size", "zvkconfig ns",
              "peer ns", "peer/we");
  for (const auto& [ours, times] : m_Times) {
    if (!ours.ends_with(Ours)) {
      continue;
    }
    const std::string subject = ours.substr(0, ours.find('/'));
    for (const auto& [theirs, theirTimes] : m_Times) {
      if (theirs == ours || !theirs.starts_with(subject + "/")) {
        continue;
      }
      const std::string peer = theirs.substr(subject.size() + 1);
      for (const auto& [size, time] : times) {
        const double theirTime = theirTimes.at(size);
        std::printf("%-14s %-14s %9ld %14.0f %14.0f %8.2f\n", subject.c_str(), peer.c_str(), size,
                    time, theirTime, theirTime / time);
      }
    }
  }
}

void Summary::printGrowth() const {
  std::printf("\n%-34s %9s %14s  time for each doubling\n", "growth", "smallest", "ns there");
  for (const auto& [name, times] : m_Times) {
    if (!name.starts_with(Growth)) {
      continue;
    }
    std::printf("%-34s %9ld %14.0f ", name.c_str() + std::string_view(Growth).size(),
                times.begin()->first, times.begin()->second);
    for (auto larger = std::next(times.begin()); larger != times.end(); ++larger) {
      std::printf(" %5.2f", larger->second / std::prev(larger)->second);
    }
    std::printf("\n");
  }
}

}  // namespace bench
