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

/// Runs a program to its end and redirects its output to /dev/null. The first word of `command` is
/// the path of the program. The measured peak of memory is at least that of the caller, because the
/// new process shares the caller's memory until the program starts.
ProcessCost runProcess(std::vector<std::string> command);

}  // namespace bench
