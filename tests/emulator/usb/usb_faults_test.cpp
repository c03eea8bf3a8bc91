#include <chrono>
#include <cstdint>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "emulator/usb/usb_device.h"
#include "testing/bytes.h"
#include "testing/packets.h"
#include "testing/usb_printer.h"

// The USB faults that the options select.

namespace {

using emulator::UsbCompletion;
using emulator::UsbDirection;
using emulator::UsbFault;
using emulator::UsbSpeed;
using emulator::UsbTraits;
using npa::Bytes;
using packets::QueryIp;
using support::bytes;
using support::ReadyUsbPrinter;
using Kind = UsbFault::Kind;
using namespace std::chrono_literals;

constexpr std::size_t ReplySize = 15;
constexpr UsbDirection In = UsbDirection::In;
constexpr UsbDirection Out = UsbDirection::Out;

UsbTraits with(Kind kind, UsbDirection direction, std::size_t after = 0) {
  return {.faults = {{kind, direction, after}}};
}

/// Returns the completions of transfers as texts such as "2: -32 after 4": id, status, bytes.
std::vector<std::string> ends(ReadyUsbPrinter& printer) {
  std::vector<std::string> texts;
  for (const UsbCompletion& end : printer.device.advance()) {
    texts.push_back(std::to_string(end.id) + ": " + std::to_string(end.status) + " after " +
                    std::to_string(end.done));
  }
  return texts;
}

using Texts = std::vector<std::string>;

TEST(UsbStall, HaltsInImmediatelyUntilTheHostClearsIt) {
  ReadyUsbPrinter printer(with(Kind::Stall, In));
  EXPECT_EQ(printer.ask({0x82, 0, 0, 0x82, 2}), bytes("00 00"));
  printer.read(1, 64);
  EXPECT_EQ(ends(printer), Texts{"1: -32 after 0"});
  EXPECT_EQ(printer.ask({0x82, 0, 0, 0x82, 2}), bytes("01 00"));
  printer.write(2, QueryIp);
  printer.read(3, 64);
  EXPECT_EQ(ends(printer), (Texts{"2: 0 after 9", "3: -32 after 0"}));
  EXPECT_EQ(printer.log, Texts{"   USB: IN stalls"});
  printer.ask({0x02, 1, 0, 0x82, 0});
  printer.read(4, 64);
  EXPECT_EQ(ends(printer), Texts{"4: 0 after 15"});
}

TEST(UsbStall, HaltsOutInTheMiddleOfATransfer) {
  ReadyUsbPrinter printer(with(Kind::Stall, Out, 5));
  printer.write(1, QueryIp);
  printer.write(2, QueryIp);
  EXPECT_EQ(ends(printer), (Texts{"1: -32 after 5", "2: -32 after 0"}));
  printer.ask({0x02, 1, 0, 0x01, 0});
  // The adapter already has the first five bytes.
  printer.write(3, Bytes(QueryIp.begin() + 5, QueryIp.end()));
  printer.read(4, 64);
  EXPECT_EQ(ends(printer), (Texts{"3: 0 after 4", "4: 0 after 15"}));
}

TEST(UsbStall, ReturnsTheBytesBeforeIt) {
  ReadyUsbPrinter printer(with(Kind::Stall, In, 4));
  printer.write(1, QueryIp);
  printer.device.advance();
  printer.read(2, 64);
  const std::vector<UsbCompletion> all = printer.device.advance();
  ASSERT_EQ(all.size(), 1U);
  EXPECT_EQ(all[0].status, emulator::UsbStalled);
  EXPECT_EQ(all[0].data, bytes("A5 00 0C 50"));
}

TEST(UsbStall, OccursAfterATransferThatEndsThere) {
  ReadyUsbPrinter printer(with(Kind::Stall, In, ReplySize));
  printer.write(1, QueryIp);
  printer.read(2, 64);
  printer.read(3, 64);
  EXPECT_EQ(ends(printer), (Texts{"1: 0 after 9", "2: 0 after 15", "3: -32 after 0"}));
}

TEST(UsbStall, IsNotPreventedByTheSetupOfTheDevice) {
  ReadyUsbPrinter printer(with(Kind::Stall, Out));
  printer.ask({0x01, 11, 0, 0, 0});
  printer.ask({0x02, 1, 0, 0x01, 0});
  printer.write(1, QueryIp);
  EXPECT_EQ(ends(printer), Texts{"1: -32 after 0"});
}

TEST(UsbProtocolError, FailsEachLaterTransfer) {
  ReadyUsbPrinter in(with(Kind::ProtocolError, In, 4));
  in.write(1, QueryIp);
  in.read(2, 64);
  in.read(3, 64);
  EXPECT_EQ(ends(in), (Texts{"1: 0 after 9", "2: -71 after 4", "3: -71 after 0"}));
  in.ask({0x02, 1, 0, 0x82, 0});
  in.read(4, 64);
  EXPECT_EQ(ends(in), Texts{"4: -71 after 0"});
  ReadyUsbPrinter out(with(Kind::ProtocolError, Out));
  out.write(1, QueryIp);
  out.write(2, QueryIp);
  EXPECT_EQ(ends(out), (Texts{"1: -71 after 0", "2: -71 after 0"}));
  EXPECT_EQ(out.log, Texts{"   USB: protocol errors on OUT"});
}

TEST(UsbHold, CompletesNothingButPermitsUnlink) {
  for (const UsbDirection direction : {In, Out}) {
    ReadyUsbPrinter printer(with(Kind::Hold, direction));
    printer.write(1, QueryIp);
    printer.read(2, 64);
    EXPECT_EQ(ends(printer), direction == In ? Texts{"1: 0 after 9"} : Texts());
    EXPECT_FALSE(printer.device.nextDue());
    EXPECT_TRUE(printer.device.unlink(direction == In ? 2 : 1));
  }
}

TEST(UsbHold, HoldsATransferInProgress) {
  ReadyUsbPrinter printer(with(Kind::Hold, Out, 5));
  printer.write(1, QueryIp);
  EXPECT_EQ(ends(printer), Texts());
  EXPECT_TRUE(printer.device.unlink(1));
  EXPECT_EQ(printer.device.waiting(), 0U);
}

TEST(UsbSlow, AcceptsPacketsAtItsRate) {
  UsbTraits traits{.speed = UsbSpeed::Full, .outBytesPerSecond = 64};
  ReadyUsbPrinter printer(traits);
  const auto start = printer.printer.now;
  printer.write(1, support::pattern(100));
  printer.write(2, QueryIp);
  EXPECT_EQ(ends(printer), Texts());
  EXPECT_EQ(printer.device.nextDue(), start + 1s);
  printer.printer.now = start + 1s;
  EXPECT_EQ(ends(printer), Texts());
  EXPECT_EQ(printer.device.nextDue(), start + 1562500us);
  printer.printer.now = start + 1562500us;
  EXPECT_EQ(ends(printer), Texts{"1: 0 after 100"});
  printer.printer.now = start + 10s;
  EXPECT_EQ(ends(printer), Texts{"2: 0 after 9"});
  // After an idle time the printer accepts no more bytes per second than before.
  printer.printer.now = start + 20s;
  printer.write(3, support::pattern(64));
  EXPECT_EQ(printer.device.nextDue(), start + 21s);
}

TEST(UsbSlow, KeepsTheAcceptedPartOfAnUnlinkedTransfer) {
  const Bytes padded = support::joined({Bytes(60, 0), QueryIp});
  ReadyUsbPrinter printer({.speed = UsbSpeed::Full, .outBytesPerSecond = 64});
  printer.write(1, padded);
  printer.printer.now += 1s;
  EXPECT_EQ(ends(printer), Texts());
  EXPECT_TRUE(printer.device.unlink(1));
  printer.write(2, Bytes(QueryIp.begin() + 4, QueryIp.end()));
  printer.printer.now += 1s;
  printer.read(3, 64);
  EXPECT_EQ(ends(printer), (Texts{"2: 0 after 5", "3: 0 after 15"}));
}

TEST(UsbUnplug, OccursInTheMiddleOfAWrite) {
  ReadyUsbPrinter printer(with(Kind::Unplug, Out, 5));
  printer.write(1, Bytes(4, 0));
  EXPECT_EQ(ends(printer), Texts{"1: 0 after 4"});
  EXPECT_FALSE(printer.device.wantsUnplug());
  printer.write(2, QueryIp);
  printer.write(3, QueryIp);
  EXPECT_EQ(ends(printer), Texts());
  EXPECT_TRUE(printer.device.wantsUnplug());
  EXPECT_FALSE(printer.device.nextDue());
}

TEST(UsbUnplug, OccursAtTheEndOfAnAcceptedWrite) {
  ReadyUsbPrinter printer(with(Kind::Unplug, Out, 9));
  printer.read(1, 64);
  printer.write(2, QueryIp);
  EXPECT_EQ(ends(printer), Texts{"2: 0 after 9"});
  EXPECT_TRUE(printer.device.wantsUnplug());
}

TEST(UsbUnplug, OccursOnlyInAReply) {
  for (const std::size_t after : {0U, 4U, 15U}) {
    ReadyUsbPrinter printer(with(Kind::Unplug, In, after));
    printer.read(1, 64);
    EXPECT_EQ(ends(printer), Texts());
    EXPECT_FALSE(printer.device.wantsUnplug());
    printer.write(2, QueryIp);
    EXPECT_EQ(ends(printer),
              after == 15 ? (Texts{"2: 0 after 9", "1: 0 after 15"}) : Texts{"2: 0 after 9"});
    EXPECT_TRUE(printer.device.wantsUnplug());
  }
}

TEST(UsbRestart, UnplugsThePrinterAfterTheHostCouldReadTheReply) {
  ReadyUsbPrinter printer({}, {.restartAfterStore = 3s});
  const auto start = printer.printer.now;
  printer.write(1, packets::StoreSsid);
  printer.write(2, QueryIp);
  printer.read(3, 64);
  printer.read(4, 64);
  // The adapter drops the query.
  EXPECT_EQ(ends(printer), (Texts{"1: 0 after 15", "2: 0 after 9", "3: 0 after 8"}));
  EXPECT_FALSE(printer.device.wantsUnplug());
  EXPECT_EQ(printer.device.nextDue(), start + 6s);
  printer.printer.now = start + 5999ms;
  EXPECT_EQ(ends(printer), Texts());
  EXPECT_FALSE(printer.device.wantsUnplug());
  printer.printer.now = start + 6s;
  EXPECT_EQ(ends(printer), Texts());
  EXPECT_TRUE(printer.device.wantsUnplug());
  EXPECT_EQ(printer.device.replugAfter(), 3s);
}

TEST(UsbRestart, LeavesAPrinterThatAnswersAgain) {
  ReadyUsbPrinter printer({}, {.restartAfterStore = 3s});
  for (int i = 0; i < 2; ++i) {
    printer.write(1, packets::StoreSsid);
    printer.read(2, 64);
    EXPECT_EQ(ends(printer), (Texts{"1: 0 after 15", "2: 0 after 8"}));
    printer.printer.now += 6s;
    EXPECT_EQ(ends(printer), Texts());
    EXPECT_TRUE(printer.device.wantsUnplug());
    printer.device.unplug();
    EXPECT_FALSE(printer.device.wantsUnplug());
    EXPECT_FALSE(printer.device.replugAfter());
    EXPECT_FALSE(printer.device.nextDue());
    printer.printer.now += 3s;
    printer.configure();
    printer.write(3, QueryIp);
    printer.read(4, 64);
    EXPECT_EQ(ends(printer), (Texts{"3: 0 after 9", "4: 0 after 15"}));
  }
}

TEST(UsbRestart, DoesNotOccurWithoutTheOption) {
  ReadyUsbPrinter printer;
  printer.write(1, packets::StoreSsid);
  printer.read(2, 64);
  EXPECT_EQ(ends(printer), (Texts{"1: 0 after 15", "2: 0 after 8"}));
  EXPECT_FALSE(printer.device.nextDue());
  printer.printer.now += 60s;
  EXPECT_EQ(ends(printer), Texts());
  EXPECT_FALSE(printer.device.wantsUnplug());
}

TEST(UsbFaults, EndWhenThePrinterIsPluggedInAgain) {
  for (const Kind kind : {Kind::Stall, Kind::ProtocolError, Kind::Hold, Kind::Unplug}) {
    for (const UsbDirection direction : {In, Out}) {
      ReadyUsbPrinter printer(with(kind, direction));
      printer.write(1, QueryIp);
      printer.read(2, 64);
      EXPECT_NE(ends(printer), (Texts{"1: 0 after 9", "2: 0 after 15"}));
      printer.device.unplug();
      EXPECT_FALSE(printer.device.wantsUnplug());
      printer.configure();
      printer.write(3, QueryIp);
      printer.read(4, 64);
      EXPECT_EQ(ends(printer), (Texts{"3: 0 after 9", "4: 0 after 15"}));
    }
  }
}

TEST(UsbFaults, OccurInTheOrderOfTheirBytes) {
  ReadyUsbPrinter printer({.faults = {{Kind::Hold, Out, 12}, {Kind::Stall, Out, 3}}});
  printer.write(1, Bytes(9, 0));
  EXPECT_EQ(ends(printer), Texts{"1: -32 after 3"});
  printer.ask({0x02, 1, 0, 0x01, 0});
  printer.write(2, Bytes(9, 0));
  printer.write(3, Bytes(1, 0));
  EXPECT_EQ(ends(printer), Texts{"2: 0 after 9"});
}

}  // namespace
