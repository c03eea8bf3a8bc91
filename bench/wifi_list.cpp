// Measures "zvkwifi list" with 16 printers as the sum of two parts. The program reads the machine's
// own /sys, so its whole run has the printers of this machine. Discovery runs in this process on
// recorded files of 16 printers.
//
// Usage: wifi_list ZVKWIFI

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <string>
#include <vector>

#include "process_run.h"
#include "results.h"
#include "session/discovery.h"
#include "testing/sysfs_tree.h"

namespace {

constexpr int Printers = 16;
constexpr int Runs = 200;
/// The bar: the largest allowed sum.
constexpr double BarMilliseconds = 10;

/// Adds printers that usblp has bound and that can be opened.
void addPrinters(const support::SysfsTree& tree) {
  for (int n = 1; n <= Printers; ++n) {
    const std::string number = std::to_string(n);
    tree.addUsblpPrinter(n, "SN" + number, "MFG:Acme;MDL:L" + number + ";CLS:PRINTER;");
    tree.addNode("usb/lp" + number);
  }
}

/// Returns the time of one discovery in nanoseconds, or -1 if it does not find every printer.
double discover(const session::Machine& machine) {
  const auto start = std::chrono::steady_clock::now();
  const bool found = session::findPrinters(machine).size() == Printers;
  const std::chrono::duration<double, std::nano> time = std::chrono::steady_clock::now() - start;
  return found ? time.count() : -1;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fputs("usage: wifi_list ZVKWIFI\n", stderr);
    return 2;
  }
  const support::SysfsTree tree;
  addPrinters(tree);
  std::vector<double> discoveries;
  std::vector<double> wholeRuns;
  for (int i = 0; i < Runs; ++i) {
    discoveries.push_back(discover(tree.machine()));
    const bench::ProcessCost cost = bench::runProcess({argv[1], "list"});
    if (!cost.ended || discoveries.back() < 0) {
      std::fputs("zvkwifi list or the discovery failed\n", stderr);
      return 1;
    }
    wholeRuns.push_back(cost.wallSeconds * 1e9);
  }
  std::vector<double> sums(Runs);
  std::ranges::transform(discoveries, wholeRuns, sums.begin(), std::plus<>());
  const auto addRow = [](const char* what, const std::vector<double>& times, double bar) {
    std::vector<double> milliseconds;
    for (const double time : times) {
      milliseconds.push_back(time / 1e6);
    }
    bench::addRow({"zvkwifi list", what, bench::timeText(bench::Spread(times).median), "",
                   bench::Spread(milliseconds), bar});
  };
  addRow("whole run, own printers; ms", wholeRuns, 0);
  addRow("discovery, 16 printers; ms", discoveries, 0);
  addRow("sum of both; ms", sums, BarMilliseconds);
  return 0;
}
