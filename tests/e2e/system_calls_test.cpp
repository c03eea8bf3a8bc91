// The counts of the system calls of each command. The tests count from the first open of the device
// on, which leaves out the calls of the loader. The counts of reads and of probes for input depend
// on time, so the tests check only limits for them.

#include <array>
#include <gtest/gtest.h>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "testing/environment.h"
#include "testing/files.h"
#include "testing/printer_run.h"
#include "testing/process.h"
#include "testing/rows.h"

namespace {

using Counts = std::map<std::string, int>;

constexpr const char* Probe = "pselect6";
/// An upper limit for the probes in a wait of 5 s. A probe takes 1 ms.
constexpr int ProbesPerWait = 5100;

/// Calls that the C library makes on its own, for memory and for standard output.
constexpr std::array LibraryCalls = {"brk",        "fstat", "mmap",     "munmap",
                                     "newfstatat", "ioctl", "getrandom"};

/// Counts the calls by name, from the first open of the device on.
Counts callsOf(const std::string& log) {
  Counts counts;
  bool isOpen = false;
  std::istringstream stream(support::fileContent(log));
  for (std::string line; std::getline(stream, line);) {
    std::istringstream words(line);
    std::string process;
    std::string call;
    words >> process;
    std::getline(words, call, '(');
    const std::string name = call.substr(call.find_first_not_of(' '));
    isOpen = isOpen || (name == "openat" && line.find("\"/dev/usb/lp") != std::string::npos);
    if (isOpen && line.find("---") == std::string::npos) {
      ++counts[name];
    }
  }
  for (const char* const name : LibraryCalls) {
    counts.erase(name);
  }
  return counts;
}

struct Row : support::Row {
  std::vector<std::string> arguments;
  int silences;  ///< waits that end without a byte
  int pauses;
  int exchanges;  ///< each opens, reads and closes the device
  int reads;      ///< the upper limit; a first read before the reply adds one
  int writes;     ///< requests, log lines and the output
};

class SystemCalls : public testing::TestWithParam<Row> {};

TEST_P(SystemCalls, HaveTheExpectedCounts) {
  const support::TemporaryFolder folder;
  const std::string log = folder.path("calls");
  {
    const support::EnvironmentVariable strace("ZVK_RUN_UNDER", "strace -f -qq -o " + log);
    support::runWithPrinter({"--ssid=home"}, GetParam().arguments);
  }
  Counts calls = callsOf(log);
  const int probes = calls[Probe];
  const int reads = calls["read"];
  calls.erase(Probe);
  calls.erase("read");
  Counts expected = {{"openat", GetParam().exchanges},
                     {"close", GetParam().exchanges},
                     {"write", GetParam().writes},
                     {"exit_group", 1}};
  if (GetParam().pauses > 0) {
    expected["clock_nanosleep"] = GetParam().pauses;
  }
  EXPECT_EQ(calls, expected);
  EXPECT_GE(reads, GetParam().exchanges);
  EXPECT_LE(reads, GetParam().reads);
  EXPECT_GE(probes, GetParam().silences);
  // A late reply adds one wait.
  EXPECT_LE(probes, (GetParam().silences + 1) * ProbesPerWait);
}

INSTANTIATE_TEST_SUITE_P(
    Commands, SystemCalls,
    // Numbers: silences, pauses, exchanges, reads, writes.
    testing::Values(Row{{"BasicConfiguration"}, {"-c", "--ssid=home", "{}"}, 1, 1, 1, 2, 3},
                    Row{{"Ssid"}, {"-s", "{}"}, 1, 1, 1, 2, 3},
                    Row{{"Address"}, {"-ip", "{}"}, 1, 1, 1, 2, 3},
                    Row{{"TroubleCode"}, {"-t", "{}"}, 1, 1, 1, 2, 2},
                    Row{{"Descriptor"}, {"-a", "{}"}, 1, 0, 1, 2, 2},
                    Row{{"AuthenticationStatus"}, {"-802s", "{}"}, 0, 1, 1, 4, 5},
                    Row{{"Reset"}, {"-r", "{}"}, 1, 1, 1, 2, 2},
                    Row{{"DefaultRun"}, {"-x", "{}"}, 3, 3, 3, 6, 7}),
    support::rowName);

}  // namespace
