#pragma once

#include <string>

/// The rows of the table, handed from the programs that measure to the one that prints it.
namespace bench {

struct Row {
  std::string work;
  std::string peer;    ///< what is measured against
  std::string ours;    ///< our figure with its unit
  std::string theirs;  ///< the peer's; empty without one
  double value = 0;    ///< what is held against the bar: a ratio or an absolute figure
  double limit = 0;    ///< the bar, which `value` must not exceed; 0: there is none
};

/// Appends a row to the file that the environment's ZVK_BENCH_ROWS names, if it names one.
void addRow(const Row& row);

/// A time in the unit that suits it.
std::string timeText(double nanoseconds);

/// A size in the largest unit that it is a whole number of.
std::string sizeText(long bytes);

}  // namespace bench
