#pragma once

#include <string>
#include <vector>

namespace bench {

/// What one run of a program cost.
struct ProcessCost {
  double wallSeconds;
  double cpuSeconds;
  long peakKibibytes;
  bool ended;  ///< with status 0
};

/// Runs a program to its end with its output to /dev/null. The peak of memory is never below that
/// of the caller, whose memory the new process has until the program starts.
ProcessCost runProcess(std::vector<std::string> command);

}  // namespace bench
