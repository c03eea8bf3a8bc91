#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "testing/generator.h"
#include "testing/output.h"

using support::Bytes;
using support::bytes;
using support::joined;
using support::Output;
using support::outputOf;
using support::pattern;
using support::TransportReleased;
using virtual_system::Second;

namespace {

/// A fixture for tests of the framing operations, with default settings.
class Framing : public support::DefaultGenerator {
 protected:
  Bytes wrapped(Bytes packet) {
    const int size = static_cast<int>(packet.size());
    EXPECT_EQ(generator->constructWrapping(packet, size), size + 9);
    return packet;
  }
};

}  // namespace

// --- The generator ------------------------------------------------------------------------------

TEST_F(Framing, UsesWrapModeByDefault) {
  EXPECT_TRUE(generator->getWrapMode());
  generator->setWrapMode(false);
  EXPECT_FALSE(generator->getWrapMode());
  generator->setWrapMode(true);
  EXPECT_TRUE(generator->getWrapMode());
}

TEST_F(Framing, ReleasesTheTransportWithTheGenerator) {
  EXPECT_EQ(outputOf([&] { generator.reset(); }), (Output{"", TransportReleased}));
  EXPECT_EQ(device.opens, 0);
}

TEST_F(Framing, UsesTheDeviceOfTheSettings) {
  auto& other = system.device("/dev/usb/lp5");
  use({"/dev/usb/lp5"});
  generator->configBasic();
  EXPECT_EQ(other.opens, 1);
  EXPECT_EQ(device.opens, 0);
}

// --- Headers ------------------------------------------------------------------------------------

TEST_F(Framing, StoresTheGroupBeforeTheNumber) {
  Bytes object = bytes("EE EE EE EE EE EE");
  EXPECT_EQ(generator->constructHeader(object.data(), 4, 38, 40), 0);
  EXPECT_EQ(object, bytes("28 26 00 00 04 EE"));
}

TEST_F(Framing, StoresTheSizeOfAnObjectInTwoBytes) {
  Bytes object(5);
  generator->constructHeader(object.data(), 300, 0x08, 0x28);
  EXPECT_EQ(object, bytes("28 08 00 01 2C"));
  generator->constructHeader(object.data(), 65535, static_cast<char>(0xF1),
                             static_cast<char>(0xF2));
  EXPECT_EQ(object, bytes("F2 F1 00 FF FF"));
}

TEST_F(Framing, CopiesTheValueAfterTheHeader) {
  Bytes object = bytes("28 08 00 00 03 EE EE EE EE");
  std::string value = "abcd";
  EXPECT_EQ(generator->mergeHeaderData(value.data(), object.data(), 8), 0);
  EXPECT_EQ(object, bytes("28 08 00 00 03 61 62 63 EE"));
}

TEST_F(Framing, CopiesNothingIfThereIsOnlyAHeader) {
  for (const int size : {5, 4, 0, -1}) {
    Bytes object = bytes("28 11 00 00 00 EE");
    std::string value = "a";
    EXPECT_EQ(generator->mergeHeaderData(value.data(), object.data(), size), 0);
    EXPECT_EQ(object, bytes("28 11 00 00 00 EE")) << size;
  }
}

TEST_F(Framing, AppendsNothingForACountOfZeroOrLess) {
  Bytes data = bytes("01");
  EXPECT_EQ(generator->appendDataToNPA(0, data.data()), 0);
  EXPECT_EQ(generator->appendDataToNPA(-1, data.data()), 0);
  EXPECT_EQ(generator->appendDataToNPA(1, data.data()), 0);
}

TEST_F(Framing, GroupingAddsSevenBytes) {
  EXPECT_EQ(generator->constructAtomicGrouping(15), 22);
  EXPECT_EQ(generator->constructAtomicGrouping(0), 7);
}

TEST_F(Framing, PrependsTheGroupingHeader) {
  Bytes objects = bytes("28 02 00 00 04 00 00 00 01 28 30 00 00 01 01");
  generator->appendDataToNPA(15, objects.data());
  EXPECT_EQ(generator->constructAtomicGrouping(15), 22);
  EXPECT_EQ(packet(), joined({bytes("A5 00 13 50 E0 DA 01"), objects}));
}

TEST_F(Framing, PrependsTheHeaderOfSettingsStoredOneByOne) {
  Bytes objects = pattern(300);
  generator->appendDataToNPA(300, objects.data());
  EXPECT_EQ(generator->constructLongNetwork(300), 307);
  EXPECT_EQ(packet(), joined({bytes("A5 01 30 50 E0 D8 01"), objects}));
}

TEST_F(Framing, WrapsAQuery) {
  EXPECT_EQ(wrapped(bytes("A5 00 06 50 E0 D8 00 2A 0A")),
            bytes("A5 00 0F 50 E0 63 02 00 09 A5 00 06 50 E0 D8 00 2A 0A"));
}

TEST_F(Framing, WrapsAConfigurationPacketOfTwoObjects) {
  // The objects have nine and six bytes.
  const Bytes batch = bytes("A5 00 13 50 E0 DA 01 28 02 00 00 04 00 00 00 01 28 30 00 00 01 01");
  EXPECT_EQ(wrapped(batch), joined({bytes("A5 00 1C 50 E0 63 02 00 16"), batch}));
}

TEST_F(Framing, WrapsAPacketOfMoreThan255Bytes) {
  const Bytes packet = pattern(300);
  EXPECT_EQ(wrapped(packet), joined({bytes("A5 01 32 50 E0 63 02 01 2C"), packet}));
}

TEST_F(Framing, WrapsAnEmptyPacket) {
  EXPECT_EQ(wrapped({}), bytes("A5 00 06 50 E0 63 02 00 00"));
}

// --- Raw data -----------------------------------------------------------------------------------

namespace {

class RawData : public support::DefaultGenerator {
 protected:
  const Output& send(Bytes data, int timeout = 10) {
    const auto send = [&] {
      return generator->sendNPAData(data.data(), static_cast<int>(data.size()), timeout);
    };
    EXPECT_EQ(resultOf(send, output), 0);
    return output;
  }
};

}  // namespace

TEST_F(RawData, IsSentUnchangedAndItsReplyIsDumped) {
  answer({bytes("A5 00 05 50 E0 41 00 7F")});
  EXPECT_EQ(send(bytes("12 34")), (Output{"",
                                          "D [ZVK] sendNPA response (4 bytes)\n"
                                          "E0 41 00 7F |.A..\n"}));
  EXPECT_EQ(device.writes, std::vector<Bytes>{bytes("12 34")});
}

TEST_F(RawData, HasAnEmptyReplyIfThePrinterIsSilent) {
  EXPECT_EQ(send(bytes("12")), (Output{"", "D [ZVK] sendNPA response (0 bytes)\n"}));
}

TEST_F(RawData, WaitsForItsTimeout) {
  send(bytes("12"), 3);
  EXPECT_EQ(system.now(), (2 + 5) * Second);
  send(bytes("12"), 10);
  EXPECT_EQ(system.now(), (2 + 5 + 2 + 10) * Second);
}

TEST_F(RawData, SucceedsEvenWithoutDevice) {
  device.openErrno = 2;
  EXPECT_EQ(send(bytes("12")), (Output{"",
                                       "D [ZVK] Failed to open usb device '/dev/usb/lp0'!\n"
                                       "D [ZVK] sendNPA response (0 bytes)\n"}));
}

TEST_F(RawData, MayBeEmpty) {
  EXPECT_EQ(send({}), (Output{"", "D [ZVK] sendNPA response (0 bytes)\n"}));
  EXPECT_EQ(device.writes, std::vector<Bytes>{{}});
}
