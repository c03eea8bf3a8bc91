#include <algorithm>
#include <array>
#include <cerrno>
#include <gtest/gtest.h>
#include <span>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "faults/failure_rig.h"

// Runs every command many times. In each run the n-th call of one kind fails, alone or with all
// later calls of this kind. n increases until a run makes fewer than n such calls. Only a sample of
// the calls of select is counted (`support::FaultInjection`).

namespace faults {
namespace {

using support::Fault;
using Plan = support::FaultInjection::Plan;

constexpr std::array Errors = {
    Fault{"EINTR", EINTR}, Fault{"EAGAIN", EAGAIN},       Fault{"EBADF", EBADF},
    Fault{"EIO", EIO},     Fault{"ENODEV", ENODEV},       Fault{"ENOSPC", ENOSPC},
    Fault{"EPIPE", EPIPE}, Fault{"ETIMEDOUT", ETIMEDOUT},
};
constexpr std::array ErrorsAndCounts = {
    Fault{"EINTR", EINTR},   Fault{"EAGAIN", EAGAIN},       Fault{"EBADF", EBADF},
    Fault{"EIO", EIO},       Fault{"ENODEV", ENODEV},       Fault{"ENOSPC", ENOSPC},
    Fault{"EPIPE", EPIPE},   Fault{"ETIMEDOUT", ETIMEDOUT}, Fault{"nothing", 0, 0},
    Fault{"one byte", 0, 1}, Fault{"seven bytes", 0, 7},
};
constexpr std::array OneError = {Fault{"failure", EIO}};

/// A kind of call and the ways in which it can fail.
struct FailingCall {
  const char* name;
  std::span<const Fault> faults;
};

constexpr std::array SystemCalls = {
    FailingCall{"open", Errors},
    FailingCall{"close", Errors},
    FailingCall{"read", ErrorsAndCounts},
    FailingCall{"write", ErrorsAndCounts},
    // The fault "nothing" stands for a timeout of select.
    FailingCall{"select", std::span(ErrorsAndCounts).first(9)},
    FailingCall{"fopen", Errors},
    FailingCall{"tcgetattr", Errors},
    FailingCall{"tcsetattr", Errors},
    FailingCall{"malloc", OneError},
    FailingCall{"usb_find_busses", Errors},
    FailingCall{"usb_find_devices", Errors},
    FailingCall{"usb_get_busses", OneError},
    FailingCall{"usb_open", OneError},
    FailingCall{"usb_set_configuration", Errors},
    FailingCall{"usb_claim_interface", Errors},
    FailingCall{"usb_bulk_write", ErrorsAndCounts},
    FailingCall{"usb_bulk_read", ErrorsAndCounts},
    FailingCall{"usb_clear_halt", Errors},
    FailingCall{"usb_release_interface", Errors},
    FailingCall{"usb_close", Errors},
};

std::string describe(const Plan& plan) {
  return std::string(plan.call) + (plan.lasting ? " from call " : " at call ") +
         std::to_string(plan.first) + ": " + plan.fault.name;
}

class NthFailure : public testing::TestWithParam<std::tuple<Command, Wiring>> {
 protected:
  const Command& command() const { return std::get<0>(GetParam()); }
  Wiring wiring() const { return std::get<1>(GetParam()); }

  /// Returns true if the command makes calls of the function `call` when nothing fails.
  bool makes(std::string_view call) {
    FailureRig rig(wiring());
    rig.run(command(), files, {.call = call, .fault = {"", 0}, .first = 0});
    return rig.callCount > 0;
  }

  /// Runs the command once for each n. In these runs only the n-th call fails. Then runs the
  /// command again for each n. In these runs the n-th call and all later calls fail.
  template <typename Expect>
  void failEach(std::string_view call, const Fault& fault, Expect expect) {
    for (const bool lasting : {false, true}) {
      bool reached = true;
      for (int n = 1; reached && !HasFailure(); ++n) {
        const Plan plan{.call = call, .fault = fault, .first = n, .lasting = lasting};
        SCOPED_TRACE(describe(plan));
        FailureRig rig(wiring());
        const Outcome outcome = rig.run(command(), files, plan);
        reached = rig.wasReached;
        runs += reached ? 1 : 0;
        longest = std::max(longest, outcome.seconds);
        expect(outcome, plan, reached);
      }
    }
  }

  ~NthFailure() override {
    RecordProperty("runs", runs);
    RecordProperty("longestSeconds", static_cast<int>(longest));
    RecordProperty("permittedSeconds", static_cast<int>(longestWait(command(), wiring())));
  }

  CommandFiles files;
  int runs = 0;
  double longest = 0;
};

TEST_P(NthFailure, OfASystemCallEndsTheRunInOrder) {
  for (const FailingCall& call : SystemCalls) {
    if (!makes(call.name)) {
      continue;
    }
    for (const Fault& fault : call.faults) {
      failEach(call.name, fault, [&](Outcome outcome, const Plan& plan, bool) {
        // If every later tcsetattr fails, the program cannot restore the echo.
        outcome.echoes = outcome.echoes || (plan.lasting && plan.call == "tcsetattr");
        expectOrderlyEnd(command(), wiring(), outcome);
      });
    }
  }
}

TEST_P(NthFailure, OfAnAllocationEndsTheRunWithAMessage) {
  failEach("new", OneError[0], [&](Outcome outcome, const Plan& /*plan*/, bool reached) {
    if (reached) {
      EXPECT_EQ(outcome.status, 1);
      EXPECT_TRUE(outcome.output.err.ends_with("D [ZVK] Out of memory!\n")) << outcome.output.err;
      outcome.status = command().statuses.front();
    }
    expectOrderlyEnd(command(), wiring(), outcome);
  });
}

INSTANTIATE_TEST_SUITE_P(Usblp, NthFailure,
                         testing::Combine(testing::ValuesIn(commands()),
                                          testing::Values(Wiring::Usblp)),
                         commandName);

INSTANTIATE_TEST_SUITE_P(LibUsb, NthFailure,
                         testing::Combine(testing::ValuesIn(commands()),
                                          testing::Values(Wiring::LibUsb)),
                         commandName);

}  // namespace
}  // namespace faults
