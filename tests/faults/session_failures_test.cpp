// Runs `set` and `status` many times. In each run the n-th call of one kind fails, alone or with
// all later calls of this kind.

#include <array>
#include <cerrno>
#include <gtest/gtest.h>
#include <new>
#include <string>
#include <string_view>

#include "session/session.h"
#include "testing/answering_printer.h"
#include "testing/fault_injection.h"

namespace {

using session::Profile;
using session::Report;
using session::Result;
using session::Security;
using session::Session;
using support::Fault;
using support::FaultInjection;
using virtual_system::Second;

constexpr std::array Calls = {"open", "close", "read", "write", "select"};
constexpr std::array Faults = {
    Fault{"EINTR", EINTR},   Fault{"EAGAIN", EAGAIN}, Fault{"EIO", EIO},
    Fault{"ENODEV", ENODEV}, Fault{"EACCES", EACCES}, Fault{"nothing", 0, 0},
};

/// The longest time that `set` may take: the exchanges before the wait, the wait, and one round of
/// readings that begins before the wait ends. Each read ends after 5 s of silence.
constexpr auto LongestRun = 150 * Second;

class SessionFailures : public support::AnsweringPrinter {
 protected:
  /// Runs `set` for a WPA network.
  Report set() {
    Profile profile;
    profile.ssid = "home";
    profile.security = Security::Wpa;
    profile.secret = session::Secret("long enough");
    Session session({.device = "/dev/usb/lp0", .node = "/dev/usb/lp0"}, {});
    return session.set(profile, {.waitSeconds = 30});
  }

  void expectOrderlyEnd(const Report& report) {
    EXPECT_FALSE(device.isOpen);
    EXPECT_LE(system.now() - start, LongestRun);
    if (report.result == Result::Confirmed) {
      EXPECT_EQ(report.state.ssid, "home");
      EXPECT_EQ(report.state.troubleCode, 0);
      EXPECT_TRUE(report.state.address);
    }
    if (!report.sentSettings) {
      EXPECT_TRUE(printer->adapter.settings().stored().empty());
    }
  }

  virtual_system::Microseconds start = 0;
};

TEST_F(SessionFailures, OfAnyCallEndInTimeWithATrueReport) {
  int runs = 0;
  for (const char* call : Calls) {
    for (const Fault& fault : Faults) {
      for (const bool lasting : {false, true}) {
        bool reached = true;
        for (int n = 1; reached && !HasFailure(); ++n) {
          SCOPED_TRACE(std::string(call) + (lasting ? " from call " : " at call ") +
                       std::to_string(n) + ": " + fault.name);
          plugIn({.ssid = "old"});
          device.arrivals.clear();
          start = system.now();
          Report report;
          {
            FaultInjection injection(
                {.call = call, .fault = fault, .first = n, .lasting = lasting});
            report = set();
            reached = injection.wasReached();
          }
          // A run in which a close fails is not checked.
          if (std::string_view(call) != "close" || !reached) {
            expectOrderlyEnd(report);
          }
          ++runs;
        }
      }
    }
  }
  RecordProperty("runs", runs);
  EXPECT_GT(runs, 300);
}

TEST_F(SessionFailures, OfAnAllocationLeaveNothingOpen) {
  bool reached = true;
  int failures = 0;
  for (int n = 1; reached && !HasFailure(); ++n) {
    SCOPED_TRACE(n);
    plugIn({.ssid = "old"});
    device.arrivals.clear();
    {
      FaultInjection injection({.call = "new", .fault = {"no memory", ENOMEM}, .first = n});
      try {
        (void)set();
      } catch (const std::bad_alloc&) {
        EXPECT_TRUE(injection.wasReached());
        ++failures;
      }
      reached = injection.wasReached();
    }
    EXPECT_FALSE(device.isOpen);
  }
  RecordProperty("runs", failures);
  EXPECT_GT(failures, 20);
}

}  // namespace
