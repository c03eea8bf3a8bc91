#pragma once

#include <string>
#include <vector>

/// The rows of the table of results. The measuring programs append them to a file, and bench_table
/// prints the file.
namespace bench {

/// One row of the table.
struct Row {
  std::string work;
  std::string peer;    ///< the library or program for comparison
  std::string ours;    ///< our figure with its unit
  std::string theirs;  ///< the peer's figure; empty if there is no peer
  double value = 0;    ///< the ratio or figure that is compared with the bar
  double limit = 0;    ///< the bar: the largest allowed `value`; 0 if there is no bar
};

/// Appends a row to the file that the environment variable ZVK_BENCH_ROWS names. Does nothing if
/// the variable is not set.
void addRow(const Row& row);

/// Returns the median and reorders the values, of which there is at least one.
double median(std::vector<double>& values);

/// Returns a time as text, in ns, us or ms.
std::string timeText(double nanoseconds);

/// Returns a count as text, in thousands or millions if it is large.
std::string countText(double count);

/// Returns a size as text, in the largest unit in which it is a whole number.
std::string sizeText(long bytes);

}  // namespace bench
