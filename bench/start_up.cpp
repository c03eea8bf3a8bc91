// Compares two whole runs: zvkconfig prints its help text, and the peer, a program that links the
// same libraries, prints one line. The runs of the two programs alternate, so that a change of the
// machine's load affects both.
//
// Usage: start_up ZVKCONFIG PEER

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

#include "process_run.h"
#include "results.h"

namespace {

constexpr int Runs = 600;
/// The largest allowed ratio of our time to the peer's.
constexpr double RatioBar = 1.15;

/// Returns the median and reorders the values.
double median(std::vector<double>& values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::ranges::nth_element(values, middle);
  return *middle;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fputs("usage: start_up ZVKCONFIG PEER\n", stderr);
    return 2;
  }
  std::vector<double> ours;
  std::vector<double> theirs;
  for (int i = 0; i < Runs; ++i) {
    for (const bool isOurs : {true, false}) {
      const bench::ProcessCost cost = bench::runProcess({argv[isOurs ? 1 : 2]});
      if (!cost.ended) {
        std::fprintf(stderr, "%s failed\n", argv[isOurs ? 1 : 2]);
        return 1;
      }
      (isOurs ? ours : theirs).push_back(cost.wallSeconds * 1e9);
    }
  }
  const double we = median(ours);
  const double they = median(theirs);
  bench::addRow({"start-up, help text", "one line, same libraries", bench::timeText(we),
                 bench::timeText(they), we / they, RatioBar});
  return 0;
}
