// Compares two whole runs: a program prints its help text, and the peer, a program that links the
// same libraries, prints one line. The runs of the two programs alternate, so that a change of the
// machine's load affects both. A ratio is that of two medians of neighbouring runs.
//
// Usage: start_up WORK BAR PEER PROGRAM [ARGUMENT...]
// BAR is the largest allowed ratio of the program's time to the peer's.

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "process_run.h"
#include "results.h"

namespace {

constexpr int Rounds = 25;
constexpr int RunsPerRound = 24;

}  // namespace

int main(int argc, char** argv) {
  if (argc < 5) {
    std::fputs("usage: start_up WORK BAR PEER PROGRAM [ARGUMENT...]\n", stderr);
    return 2;
  }
  const std::vector<std::string> peer = {argv[3]};
  const std::vector<std::string> program(argv + 4, argv + argc);
  std::vector<double> ours;
  std::vector<double> theirs;
  std::vector<double> ratios;
  for (int round = 0; round < Rounds; ++round) {
    std::vector<double> times;
    std::vector<double> peerTimes;
    for (int i = 0; i < 2 * RunsPerRound; ++i) {
      const bool isOurs = i % 2 == 0;
      const std::vector<std::string>& command = isOurs ? program : peer;
      const bench::ProcessCost cost = bench::runProcess(command);
      if (!cost.ended) {
        std::fprintf(stderr, "%s failed\n", command.front().c_str());
        return 1;
      }
      (isOurs ? times : peerTimes).push_back(cost.wallSeconds * 1e9);
    }
    ours.push_back(bench::Spread(times).median);
    theirs.push_back(bench::Spread(peerTimes).median);
    ratios.push_back(ours.back() / theirs.back());
  }
  bench::addRow({argv[1], "one line, same libraries", bench::timeText(bench::Spread(ours).median),
                 bench::timeText(bench::Spread(theirs).median), bench::Spread(ratios),
                 std::atof(argv[2])});
  return 0;
}
