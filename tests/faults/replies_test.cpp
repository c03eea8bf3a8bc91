#include <algorithm>
#include <gtest/gtest.h>
#include <string>
#include <tuple>
#include <vector>

#include "faults/failure_rig.h"

// Runs commands with a printer that replies late, refuses requests, still holds an old reply, or
// never stops replying.

namespace faults {
namespace {

using support::Bytes;
using support::bytes;

class Replies : public testing::Test {
 protected:
  ~Replies() override { RecordProperty("runs", runs); }

  Outcome run(FailureRig& rig, const Command& command) {
    ++runs;
    Outcome outcome = rig.run(command, files);
    expectOrderlyEnd(command, Wiring::Usblp, outcome);
    return outcome;
  }

  CommandFiles files;
  int runs = 0;
};

// --- Late ---------------------------------------------------------------------------------------

struct LateRow : support::Row {
  int window;    ///< for how many seconds after its request an attempt accepts a reply
  int period;    ///< seconds from the start of one attempt to the start of the next
  int attempts;  ///< count of attempts, wrapped and bare together
  int inTime;    ///< exit status if the reply arrives before the last attempt ends
  int tooLate;   ///< exit status if the reply arrives later
};

class LateReplies : public Replies, public testing::WithParamInterface<LateRow> {};

TEST_P(LateReplies, AreReadByTheAttemptInProgress) {
  const LateRow& row = GetParam();
  const int end = row.window + (row.attempts - 1) * row.period;
  for (int delay = 0; delay <= end + 1; ++delay) {
    SCOPED_TRACE(std::to_string(delay) + " seconds late");
    FailureRig rig(Wiring::Usblp);
    rig.device.onWrite = [&](const Bytes& request) {
      rig.device.reply(rig.printer.ask(request), delay * virtual_system::Second);
    };
    const Outcome outcome = run(rig, command(row.name));
    EXPECT_EQ(outcome.status, delay <= end ? row.inTime : row.tooLate);
    const int missed = (std::max(delay - row.window, 0) + row.period - 1) / row.period;
    EXPECT_EQ(static_cast<int>(rig.device.writes.size()), std::min(missed + 1, row.attempts));
  }
}

INSTANTIATE_TEST_SUITE_P(
    Commands, LateReplies,
    testing::Values(LateRow{{"Basic"}, 10, 10, 2, 0, 255}, LateRow{{"Prompt"}, 10, 10, 2, 0, 255},
                    LateRow{{"Ssid"}, 7, 7, 7, 0, 1}, LateRow{{"Ip"}, 8, 8, 7, 0, 1},
                    LateRow{{"TroubleCode"}, 7, 7, 4, 0, 1},
                    LateRow{{"Descriptor"}, 5, 15, 6, 0, 1}, LateRow{{"Reset"}, 10, 60, 2, 0, 1},
                    LateRow{{"AuthStatus"}, 7, 7, 2, 3, 255},
                    LateRow{{"RawPacket"}, 12, 12, 1, 0, 0},
                    LateRow{{"RequestDefaults"}, 7, 7, 1, 0, 1},
                    LateRow{{"InstallSigned"}, 7, 7, 1, 0, 1}),
    support::rowName);

// --- Refused ------------------------------------------------------------------------------------

const Bytes Refusal = bytes("A5 00 02 D4 E0");

struct RefusalRow : support::Row {
  int attempts;    ///< count of wrapped attempts if the printer stays silent
  int good;        ///< exit status if the printer accepts a later attempt
  int refused;     ///< exit status if the printer refuses the last attempt
  bool isRetried;  ///< true if a refused request is repeated bare
};

class Refusals : public Replies, public testing::WithParamInterface<RefusalRow> {
 protected:
  /// Runs the command. The printer is silent in the attempts before `from`, refuses the attempts
  /// `from` to `to` and replies to all later ones. Expects the exit status and the count of writes.
  void refuse(int from, int to, int status, int writes) {
    SCOPED_TRACE("refusals from " + std::to_string(from) + " to " + std::to_string(to));
    FailureRig rig(Wiring::Usblp);
    int attempt = 0;
    rig.device.onWrite = [&](const Bytes& request) {
      const Bytes reply = rig.printer.ask(request);
      ++attempt;
      if (attempt >= from) {
        rig.device.reply(attempt <= to ? Refusal : reply);
      }
    };
    EXPECT_EQ(run(rig, command(GetParam().name)).status, status);
    EXPECT_EQ(static_cast<int>(rig.device.writes.size()), writes);
  }
};

TEST_P(Refusals, AreHandledInEachAttempt) {
  const RefusalRow& row = GetParam();
  for (int attempt = 1; attempt <= row.attempts; ++attempt) {
    const bool isLast = attempt == row.attempts && !row.isRetried;
    refuse(attempt, attempt, isLast ? row.refused : row.good, isLast ? attempt : attempt + 1);
    refuse(attempt, 1000, row.refused, row.isRetried ? attempt + 1 : row.attempts);
  }
}

INSTANTIATE_TEST_SUITE_P(Commands, Refusals,
                         testing::Values(RefusalRow{{"Basic"}, 1, 0, 255, true},
                                         RefusalRow{{"Shared"}, 1, 0, 255, true},
                                         RefusalRow{{"Ssid"}, 7, 0, 255, true},
                                         RefusalRow{{"Ip"}, 7, 0, 255, true},
                                         RefusalRow{{"TroubleCode"}, 4, 0, 255, true},
                                         RefusalRow{{"AuthStatus"}, 1, 3, 255, true},
                                         RefusalRow{{"Descriptor"}, 6, 0, 1, false},
                                         RefusalRow{{"Reset"}, 2, 0, 1, false},
                                         RefusalRow{{"RequestDefaults"}, 1, 0, 1, false}),
                         support::rowName);

// --- Stale --------------------------------------------------------------------------------------

struct StaleRow : support::Row {
  int status;  ///< exit status
  std::size_t writes;
};

class StaleReplies : public Replies, public testing::WithParamInterface<StaleRow> {};

/// The old reply. An earlier run of the program queried the SSID and did not read the reply.
const Bytes StaleReply = bytes("A5 00 0C 50 E0 D8 00 28 08 00 04 6F 6C 64 00");

TEST_P(StaleReplies, AreReadBeforeTheReplyToTheRequest) {
  FailureRig rig(Wiring::Usblp);
  rig.device.reply(StaleReply);
  EXPECT_EQ(run(rig, command(GetParam().name)).status, GetParam().status);
  EXPECT_EQ(rig.device.writes.size(), GetParam().writes);
}

// Commands that read until the printer is silent check the last bytes that arrive, so they succeed.
// A command that reads packet by packet takes the old reply for its own reply.
INSTANTIATE_TEST_SUITE_P(Commands, StaleReplies,
                         testing::Values(StaleRow{{"Basic"}, 0, 1}, StaleRow{{"Open"}, 0, 1},
                                         StaleRow{{"Ip"}, 0, 1}, StaleRow{{"TroubleCode"}, 0, 1},
                                         StaleRow{{"Descriptor"}, 0, 1}, StaleRow{{"Reset"}, 0, 1},
                                         StaleRow{{"AuthStatus"}, 3, 2},
                                         StaleRow{{"RequestDefaults"}, 1, 1},
                                         StaleRow{{"InstallSigned"}, 1, 1}),
                         support::rowName);

// --- Endless ------------------------------------------------------------------------------------

struct Stream {
  const char* name;
  Bytes bytes;
};

class EndlessReplies : public testing::TestWithParam<std::tuple<Command, Wiring>> {};

/// The time from one piece of a stream to the next: 1 ms.
constexpr virtual_system::Microseconds PieceTime = 1000;

void sendForEver(FailureRig& rig, const Bytes& piece) {
  rig.device.readResult = [&rig, &piece] {
    if (rig.device.arrivals.empty()) {
      rig.device.reply(piece, PieceTime);
    }
    return 0;
  };
  rig.libusb.bulkRead = [&rig, &piece](char* buffer, int size) {
    rig.system.advance(PieceTime);
    const auto count = std::min(piece.size(), static_cast<std::size_t>(size));
    std::copy_n(piece.begin(), count, reinterpret_cast<std::uint8_t*>(buffer));
    return static_cast<int>(count);
  };
}

TEST_P(EndlessReplies, EndTheRunInOrder) {
  Command command = std::get<0>(GetParam());
  const Wiring wiring = std::get<1>(GetParam());
  if (std::string(command.name) == "TroubleCode") {
    // The command returns the trouble code as its exit status. The trouble code is the last byte
    // that it reads, which depends on the stream.
    command.statuses = {0, 1, 255, 0x20, 0xA5, 0xE0, 0x02, 0xFF, 0xD4};
  }
  const std::vector<Stream> streams = {
      {"Zeros", Bytes(64)},
      {"LargePackets", bytes("A5 FF FF 50 E0")},
      {"MoreFollows", bytes("A5 00 02 20 E0")},
      {"NoPackets", bytes("FF")},
      {"Refusals", Refusal},
      {"HalfAHeader", bytes("A5 00")},
  };
  for (const Stream& stream : streams) {
    SCOPED_TRACE(stream.name);
    FailureRig rig(wiring);
    const CommandFiles files;
    sendForEver(rig, stream.bytes);
    expectOrderlyEnd(command, wiring, rig.run(command, files));
  }
  RecordProperty("runs", static_cast<int>(streams.size()));
}

INSTANTIATE_TEST_SUITE_P(Usblp, EndlessReplies,
                         testing::Combine(testing::ValuesIn(exchangingCommands()),
                                          testing::Values(Wiring::Usblp)),
                         commandName);

INSTANTIATE_TEST_SUITE_P(LibUsb, EndlessReplies,
                         testing::Combine(testing::ValuesIn(exchangingCommands()),
                                          testing::Values(Wiring::LibUsb)),
                         commandName);

}  // namespace
}  // namespace faults
