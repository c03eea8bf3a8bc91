#include <algorithm>
#include <array>
#include <cerrno>
#include <gtest/gtest.h>
#include <span>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "faults/bench.h"

// Every command, over and over: the n-th call of one kind fails, n counting up until a run gets to
// its end without it. Repeated calls of select are sampled (`support::Disturbance`).

namespace faults {
namespace {

using support::Fault;
using Plan = support::Disturbance::Plan;

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

/// A kind of call and how it may fail.
struct FailingCall {
  const char* name;
  std::span<const Fault> faults;
};

constexpr std::array SystemCalls = {
    FailingCall{"open", Errors},
    FailingCall{"close", Errors},
    FailingCall{"read", ErrorsAndCounts},
    FailingCall{"write", ErrorsAndCounts},
    // Nothing: a limit that passes.
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

  /// Whether the command makes such calls when nothing fails.
  bool makes(std::string_view call) {
    Bench bench(wiring());
    bench.run(command(), files, {.call = call, .fault = {"", 0}, .first = 0});
    return bench.callCount > 0;
  }

  /// Runs the command with the n-th call failing, for each n that there is; once with that call
  /// alone, once with all that follow.
  template <typename Expect>
  void failEach(std::string_view call, const Fault& fault, Expect expect) {
    for (const bool lasting : {false, true}) {
      bool reached = true;
      for (int n = 1; reached && !HasFailure(); ++n) {
        const Plan plan{.call = call, .fault = fault, .first = n, .lasting = lasting};
        SCOPED_TRACE(describe(plan));
        Bench bench(wiring());
        const Outcome outcome = bench.run(command(), files, plan);
        reached = bench.wasReached;
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

TEST_P(NthFailure, OfTheSystemEndsTheRunInOrder) {
  for (const FailingCall& call : SystemCalls) {
    if (!makes(call.name)) {
      continue;
    }
    for (const Fault& fault : call.faults) {
      failEach(call.name, fault, [&](Outcome outcome, const Plan& plan, bool) {
        // A terminal that never takes its echo back keeps silent.
        outcome.echoes = outcome.echoes || (plan.lasting && plan.call == "tcsetattr");
        expectOrderlyEnd(command(), wiring(), outcome);
      });
    }
  }
}

TEST_P(NthFailure, OfMemoryEndsTheRunWithAMessage) {
  failEach("new", OneError[0], [&](Outcome outcome, const Plan& /*plan*/, bool reached) {
    if (reached) {
      EXPECT_EQ(outcome.status, 1);
      EXPECT_TRUE(outcome.output.err.ends_with("D [ZVK] Out of memory!\n")) << outcome.output.err;
      outcome.status = command().statuses.front();
    }
    expectOrderlyEnd(command(), wiring(), outcome);
  });
}

constexpr auto commandName = [](const auto& test) {
  return std::string(std::get<0>(test.param).name);
};

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
