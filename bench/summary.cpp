// Summary: collects the medians, compares them with the bars, and makes the rows of the table.

#include "summary.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "contest.h"
#include "results.h"

namespace bench {

namespace {

constexpr double NoBar = 0;

/// The largest allowed ratio of our time to a peer's.
struct Bar {
  std::string_view work;  ///< the start of the work's name
  std::string_view peer;
  double ratio;
  long smallest = 0;         ///< the smallest size to which the bar applies
  long largest = 1L << 40U;  ///< the largest size to which the bar applies
};

constexpr Bar Bars[] = {
    {"SAX parse", "expat", 1},
    {"SAX parse", "expat, reused", 1},
    {"SAX parse", "libxml2", 1},
    {"SAX parse", "pugixml, tree", 2},
    {"path query", "libxml2", 1},
    {"path query", "pugixml", 1},
    {"Base64", "OpenSSL", 1},
    {"hex text", "OpenSSL", 1},
    {"packet dump", "xxd", 0.1},
    {"ring buffer", "Boost and a mutex", 1, 64},
    {"ring buffer", "lock calls alone", 2, 64, 64},
    {"symbolToEntities", "one memcpy pass", 10},
    {"replaceEntities", "one memcpy pass", 10},
    {"getXmlResponse", "one memcpy pass", 10},
};

/// The bars of works without a peer. Here `ratio` is the largest allowed time in nanoseconds.
constexpr Bar AbsoluteBars[] = {{"packet building", "", 2000}};

/// Returns the bar of a comparison, or `NoBar`.
double limitOf(std::string_view work, std::string_view peer, long size) {
  const auto* const bar = std::ranges::find_if(Bars, [&](const Bar& candidate) {
    return work.starts_with(candidate.work) && peer == candidate.peer &&
           size >= candidate.smallest && size <= candidate.largest;
  });
  return bar == std::end(Bars) ? NoBar : bar->ratio;
}

}  // namespace

void Summary::ReportRuns(const std::vector<Run>& runs) {
  for (const Run& run : runs) {
    if (run.run_type != Run::RT_Aggregate || run.aggregate_name != "median") {
      continue;
    }
    const std::string& name = run.run_name.function_name;
    const std::size_t slash = name.find('/');
    const long size = std::strtol(run.run_name.args.c_str(), nullptr, 10);
    const bool isManual = !run.run_name.time_type.empty();
    m_Works[name.substr(0, slash)][name.substr(slash + 1)][size] =
        isManual ? run.GetAdjustedRealTime() : run.GetAdjustedCPUTime();
  }
  ConsoleReporter::ReportRuns(runs);
}

void Summary::addRows() const {
  for (const auto& [work, contestants] : m_Works) {
    addComparisons(work, contestants);
  }
}

void Summary::addComparisons(const std::string& work, const Contestants& contestants) {
  for (const auto& [size, time] : contestants.at(Ours)) {
    const std::string sized = work + ", " + sizeText(size);
    for (const auto& [peer, times] : contestants) {
      if (peer != Ours) {
        const double theirs = times.at(size);
        addRow({sized, peer, timeText(time), timeText(theirs), time / theirs,
                limitOf(work, peer, size)});
      }
    }
    for (const Bar& bar : AbsoluteBars) {
      if (work == bar.work) {
        addRow({sized, "-, ns", timeText(time), "", time, bar.ratio});
      }
    }
  }
}

}  // namespace bench
