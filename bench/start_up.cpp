// Compares two whole runs: a program prints its help text, and the peer, a program that links the
// same libraries, prints one line. The runs of the two programs alternate, so that a change of the
// machine's load affects both.
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

constexpr int Runs = 600;

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
  for (int i = 0; i < Runs; ++i) {
    for (const bool isOurs : {true, false}) {
      const std::vector<std::string>& command = isOurs ? program : peer;
      const bench::ProcessCost cost = bench::runProcess(command);
      if (!cost.ended) {
        std::fprintf(stderr, "%s failed\n", command.front().c_str());
        return 1;
      }
      (isOurs ? ours : theirs).push_back(cost.wallSeconds * 1e9);
    }
  }
  const double we = bench::median(ours);
  const double they = bench::median(theirs);
  bench::addRow({argv[1], "one line, same libraries", bench::timeText(we), bench::timeText(they),
                 we / they, std::atof(argv[2])});
  return 0;
}
