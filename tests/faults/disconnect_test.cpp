#include <algorithm>
#include <gtest/gtest.h>
#include <string>
#include <tuple>
#include <vector>

#include "faults/disconnecting_printer.h"

// The printer is disconnected during each request and each reply of each command: for good, or
// until the program opens it again. In a short request or reply the tests disconnect the printer at
// each byte, otherwise at a sample of the bytes (`TriedPositions`).

namespace faults {
namespace {

class Disconnect : public testing::TestWithParam<std::tuple<Command, Wiring>> {
 protected:
  ~Disconnect() override { RecordProperty("runs", m_Runs); }

  const Command& command() const { return std::get<0>(GetParam()); }
  Wiring wiring() const { return std::get<1>(GetParam()); }

  /// Runs the command once for each position, with the printer disconnected there.
  template <typename Expect>
  void disconnectAtEach(bool returns, Expect expect) {
    DisconnectingPrinter faultless(wiring(), {});
    faultless.rig.run(command(), m_Files);
    for (std::size_t i = 0; i < faultless.sizes.size(); ++i) {
      const Size& size = faultless.sizes[i];
      for (const bool inRequest : {true, false}) {
        for (const std::size_t bytes : positions(inRequest ? size.request - 1 : size.reply)) {
          const Moment moment{static_cast<int>(i) + 1, inRequest, bytes, returns};
          SCOPED_TRACE(describe(moment));
          DisconnectingPrinter printer(wiring(), moment);
          const Outcome outcome = printer.rig.run(command(), m_Files);
          ++m_Runs;
          expectOrderlyEnd(command(), wiring(), outcome);
          expect(moment, outcome, printer.opens());
          if (HasFailure()) {
            return;
          }
        }
      }
    }
  }

 private:
  CommandFiles m_Files;
  int m_Runs = 0;
};

TEST_P(Disconnect, EndsTheRunInOrder) {
  disconnectAtEach(false,
                   [](const Moment& /*moment*/, const Outcome& /*outcome*/, int /*opens*/) {});
}

/// The results of a command if the printer sends nothing in one exchange and is connected again in
/// the next exchange.
struct Expectation {
  const char* command;
  struct Result {
    int status;
    int opens;
  };
  std::vector<Result> results;  ///< one for each exchange in which the printer is disconnected
};

const std::vector<Expectation>& expectations() {
  static const std::vector<Expectation> all = {
      {"Basic", {{0, 2}}},
      {"WpaPersonal", {{0, 2}}},
      {"Ssid", {{0, 2}}},
      {"Ip", {{0, 2}}},
      {"TroubleCode", {{0, 2}}},
      {"Descriptor", {{0, 2}}},
      {"Reset", {{0, 2}}},
      {"AuthStatus", {{3, 2}}},
      {"Certificate", {{0, 2}, {0, 2}}},
      {"RawPacket", {{0, 1}}},
      {"RequestDefaults", {{1, 1}}},
      // The first exchange deletes an earlier certificate. The program ignores a failure of this
      // exchange.
      {"Request", {{0, 3}, {1, 2}, {1, 3}}},
      // The first exchange lists the CA certificates. The program ignores a failure of this
      // exchange.
      {"InstallAuthority", {{0, 2}, {1, 2}}},
      {"InstallSigned", {{1, 1}}},
      {"DefaultRun", {{0, 4}, {0, 4}, {0, 4}}},
  };
  return all;
}

TEST_P(Disconnect, CostsOneAttemptIfThePrinterReturns) {
  const auto row =
      std::ranges::find(expectations(), std::string(command().name), &Expectation::command);
  disconnectAtEach(true, [&](const Moment& moment, const Outcome& outcome, int opens) {
    const bool wasSilent = moment.inRequest || moment.bytes == 0;
    if (wasSilent && row != expectations().end()) {
      const auto& expected = row->results.at(static_cast<std::size_t>(moment.exchange) - 1);
      EXPECT_EQ(outcome.status, expected.status);
      EXPECT_EQ(opens, expected.opens);
    }
  });
}

INSTANTIATE_TEST_SUITE_P(Usblp, Disconnect,
                         testing::Combine(testing::ValuesIn(exchangingCommands()),
                                          testing::Values(Wiring::Usblp)),
                         commandName);

INSTANTIATE_TEST_SUITE_P(LibUsb, Disconnect,
                         testing::Combine(testing::ValuesIn(exchangingCommands()),
                                          testing::Values(Wiring::LibUsb)),
                         commandName);

}  // namespace
}  // namespace faults
