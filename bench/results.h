#pragma once

#include <cstddef>
#include <string>
#include <vector>

/// The rows of the table of results. The measuring programs append them to a file, and bench_table
/// prints the file.
namespace bench {

/// The median of several figures and the spread of the figures. The tenth of the figures at each
/// end is left out, because a busy moment of the machine can make a few figures meaningless.
struct Spread {
  /// The spread of one exact figure.
  Spread(double figure) : low(figure), median(figure), high(figure) {}
  /// The spread of at least one figure.
  explicit Spread(std::vector<double> figures);

  double low;
  double median;
  double high;
};

/// One row of the table.
struct Row {
  std::string work;
  std::string peer;    ///< the library or program for comparison
  std::string ours;    ///< our figure with its unit
  std::string theirs;  ///< the peer's figure; empty if there is no peer
  Spread value;        ///< the ratio or figure that is compared with the bar
  double limit = 0;    ///< the bar; 0 if there is no bar. It is missed if all figures exceed it.
};

/// Appends a row to the file that the environment variable ZVK_BENCH_ROWS names. Does nothing if
/// the variable is not set.
void addRow(const Row& row);

/// Returns a time as text, in ns, us or ms.
std::string timeText(double nanoseconds);

/// Returns a count as text, in thousands or millions if it is large.
std::string countText(double count);

/// Returns a size as text, in the largest unit in which it is a whole number.
std::string sizeText(std::size_t bytes);

}  // namespace bench
