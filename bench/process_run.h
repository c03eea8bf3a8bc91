#pragma once

#include <string>
#include <vector>

namespace bench {

/// The cost of one run of a program.
struct ProcessCost {
  double wallSeconds;
  double cpuSeconds;
  long peakKibibytes;
  bool ended;  ///< true if the exit status is 0
};

/// Runs a program to its end with its output to /dev/null. The first word of `command` is its path.
/// The peak of memory is at least that of the caller, whose memory the new process shares until the
/// program starts.
ProcessCost runProcess(std::vector<std::string> command);

}  // namespace bench
