#include <chrono>
#include <cstdlib>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/stat.h>

#include "testing/files.h"
#include "testing/process.h"
#include "wifi/networks.h"
#include "wifi/secret_input.h"
#include "wifi/signals.h"

// Runs of nmcli. A script stands in for nmcli.

namespace {

/// How many of the next calls of poll return before their time. A faster clock can cause this.
int earlyPolls = 0;

}  // namespace

// The linker's --wrap requires these names.
// NOLINTBEGIN(bugprone-reserved-identifier,cert-dcl37-c)
extern "C" {

int __real_poll(pollfd* polled, nfds_t count, int milliseconds);

int __wrap_poll(pollfd* polled, nfds_t count, int milliseconds) {
  if (earlyPolls > 0) {
    --earlyPolls;
    return 0;
  }
  return __real_poll(polled, count, milliseconds);
}

}  // extern "C"
// NOLINTEND(bugprone-reserved-identifier,cert-dcl37-c)

namespace {

using Clock = std::chrono::steady_clock;

/// While this object exists, a script named nmcli comes first in the search path PATH.
class StandIn {
 public:
  explicit StandIn(const std::string& script) {
    const std::string path = m_Folder.write("nmcli", "#!/bin/sh\n" + script + "\n");
    ::chmod(path.c_str(), S_IRWXU);
    ::setenv("PATH", (m_Folder.path("") + ":" + m_Saved).c_str(), 1);
  }
  ~StandIn() { ::setenv("PATH", m_Saved.c_str(), 1); }
  StandIn(const StandIn&) = delete;
  StandIn& operator=(const StandIn&) = delete;

  [[nodiscard]] std::string path(const char* name) const { return m_Folder.path(name); }

 private:
  support::TemporaryFolder m_Folder;
  std::string m_Saved = std::getenv("PATH");
};

TEST(NetworkScan, ReturnsWhatNmcliPrints) {
  const StandIn nmcli("echo '*:home:WPA2:50'; echo problem >&2");
  const auto networks = wifi::visibleNetworks();
  ASSERT_EQ(networks.size(), 1U);
  EXPECT_EQ(networks.front().ssid, "home");
}

TEST(NetworkScan, WaitsAgainIfPollReturnsTooEarly) {
  const StandIn nmcli("sleep 1; echo '*:home:WPA2:50'");
  earlyPolls = 3;
  EXPECT_EQ(wifi::visibleNetworks().size(), 1U);
  EXPECT_EQ(earlyPolls, 0);
}

TEST(NetworkScan, AsksForTheFieldsWithoutANewScan) {
  const StandIn nmcli("printf '%s|' \"$@\" > \"$(dirname \"$0\")/words\"; cat");
  EXPECT_TRUE(wifi::visibleNetworks().empty());
  EXPECT_EQ(support::fileContent(nmcli.path("words")),
            "-t|-f|IN-USE,SSID,SECURITY,SIGNAL|device|wifi|list|--rescan|no|");
}

TEST(NetworkScan, IsEmptyIfNmcliFails) {
  const StandIn nmcli("echo '*:home:WPA2:50'; exit 8");
  EXPECT_TRUE(wifi::visibleNetworks().empty());
}

TEST(NetworkScan, IsEmptyWithoutNmcli) {
  const support::TemporaryFolder folder;
  const std::string saved = std::getenv("PATH");
  ::setenv("PATH", folder.path("").c_str(), 1);
  EXPECT_TRUE(wifi::visibleNetworks().empty());
  ::setenv("PATH", saved.c_str(), 1);
}

TEST(NetworkScan, IsEmptyIfTheOutputIsTooLong) {
  const StandIn nmcli("echo '*:home:WPA2:50'; yes ''");
  const auto start = Clock::now();
  EXPECT_TRUE(wifi::visibleNetworks().empty());
  EXPECT_LT(Clock::now() - start, std::chrono::seconds(5));
}

/// Returns true if the process runs. A process that has ended but still has an entry in /proc does
/// not run.
bool isRunning(const std::string& pid) {
  const std::string state = support::fileContent("/proc/" + pid + "/stat");
  return !state.empty() && state.find(") Z ") == std::string::npos;
}

TEST(NetworkScan, EndsNmcliAndItsChildrenAfterFiveSeconds) {
  const StandIn nmcli(
      "echo '*:home:WPA2:50'; sleep 60 & printf $! > \"$(dirname \"$0\")/pid\"; wait");
  const auto start = Clock::now();
  EXPECT_TRUE(wifi::visibleNetworks().empty());
  EXPECT_GE(Clock::now() - start, std::chrono::seconds(5));
  EXPECT_LT(Clock::now() - start, std::chrono::seconds(50));
  const std::string child = support::fileContent(nmcli.path("pid"));
  ASSERT_NE(child, "");
  EXPECT_TRUE(support::eventually([&] { return !isRunning(child); }));
}

TEST(NetworkScan, EndsAfterFiveSecondsIfNmcliClosesItsOutput) {
  const StandIn nmcli("exec >&-; sleep 60");
  const auto start = Clock::now();
  EXPECT_TRUE(wifi::visibleNetworks().empty());
  EXPECT_LT(Clock::now() - start, std::chrono::seconds(50));
}

TEST(NetworkScan, EndsWithASignal) {
  const StandIn nmcli("kill -INT $PPID; sleep 60");
  // The scan runs in a separate process, because `wifi::Interruption` cannot reset the signal that
  // has arrived.
  const auto scan = [] {
    const wifi::Interruption interruption;
    try {
      (void)wifi::visibleNetworks();
    } catch (const wifi::Interrupted&) {
      std::exit(0);
    }
    std::exit(1);
  };
  EXPECT_EXIT(scan(), testing::ExitedWithCode(0), "");
}

}  // namespace
