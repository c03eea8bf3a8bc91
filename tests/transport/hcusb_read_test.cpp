#include <cerrno>
#include <gtest/gtest.h>
#include <vector>

#include "testing/bytes.h"
#include "testing/fake_libusb.h"
#include "testing/open_transport.h"

using support::Bytes;
using support::bytes;
using support::joined;
using support::pattern;
using support::TransportUser;
using virtual_system::Second;
using TransportRead = support::OpenTransport;

TEST_F(TransportRead, DoesNotProbeIfTheFirstReadReturnsAllBytes) {
  device.reply(bytes("01 02 03"));
  EXPECT_EQ(read(3), bytes("01 02 03"));
  EXPECT_EQ(device.readSizes, std::vector<std::size_t>{3});
  EXPECT_EQ(device.readSelects, 0);
}

TEST_F(TransportRead, ReadsZeroBytesWithoutWaiting) {
  EXPECT_EQ(read(0), Bytes());
  EXPECT_EQ(device.readSelects, 0);
  EXPECT_EQ(system.now(), 0);
}

TEST_F(TransportRead, EndsFiveSecondsAfterTheLastByte) {
  device.reply(pattern(20));
  EXPECT_EQ(read(1000), pattern(20));
  EXPECT_EQ(system.now(), 5 * Second);
  EXPECT_EQ(device.readSizes, (std::vector<std::size_t>{1000}));
  EXPECT_EQ(device.readSelects, 5000);
  EXPECT_EQ(device.selectLimits, std::vector<long>(5000, 1000));
}

TEST_F(TransportRead, EndsAfterFiveSecondsWithoutAnyByte) {
  EXPECT_EQ(read(1000), Bytes());
  EXPECT_EQ(system.now(), 5 * Second);
  EXPECT_TRUE(system.briefPauses.empty());
}

TEST_F(TransportRead, CollectsPiecesAndRequestsTheRest) {
  device.reply(pattern(3), Second);
  device.reply(bytes("F1 F2"), 5 * Second);
  device.reply(bytes("F3"), 9 * Second);
  EXPECT_EQ(read(6), joined({pattern(3), bytes("F1 F2 F3")}));
  EXPECT_EQ(device.readSizes, (std::vector<std::size_t>{6, 6, 3, 1}));
  EXPECT_EQ(system.now(), 9 * Second);
}

TEST_F(TransportRead, LeavesBytesBeyondItsCount) {
  device.reply(bytes("01 02 03 04"));
  EXPECT_EQ(read(1), bytes("01"));
  EXPECT_EQ(read(2), bytes("02 03"));
  EXPECT_EQ(read(1), bytes("04"));
}

TEST_F(TransportRead, RestartsTheDeadlineWithEachPiece) {
  for (virtual_system::Microseconds piece = 1; piece <= 4; ++piece) {
    device.reply(bytes("AB"), 4 * piece * Second);
  }
  EXPECT_EQ(read(10), bytes("AB AB AB AB"));
  EXPECT_EQ(system.now(), (16 + 5) * Second);
}

TEST_F(TransportRead, ReadsAPieceThatArrivesInTheLastMillisecond) {
  device.reply(bytes("AB"), 5 * Second);
  EXPECT_EQ(read(1), bytes("AB"));
}

TEST_F(TransportRead, DoesNotReadAPieceThatArrivesTooLate) {
  device.reply(bytes("AB"), 5 * Second + 1);
  EXPECT_EQ(read(1), Bytes());
}

TEST_F(TransportRead, EndsAtAFailedProbe) {
  device.reply(bytes("01 02"));
  device.readSelectResult = [] {
    return -1;
  };
  EXPECT_EQ(read(10), bytes("01 02"));
  EXPECT_EQ(device.readSelects, 1);
  // A caller that reads again until a deadline must not keep the processor busy.
  EXPECT_EQ(system.briefPauses, std::vector<unsigned int>{1000});
  EXPECT_EQ(system.now(), 1000);
}

TEST_F(TransportRead, EndsIfAProbeFailsAfterOthersTimedOut) {
  device.readSelectResult = [probes = 0]() mutable {
    return ++probes < 3 ? 0 : -1;
  };
  EXPECT_EQ(read(10), Bytes());
  EXPECT_EQ(device.readSelects, 3);
}

TEST_F(TransportRead, TreatsAReadErrorAsNoBytes) {
  device.reply(bytes("01 02"));
  device.readResult = [reads = 0]() mutable {
    return ++reads == 1 ? -EINTR : 0;
  };
  EXPECT_EQ(read(2), bytes("01 02"));
}

// --- A device that is readable but has no bytes, such as an unplugged one -----------------------

TEST_F(TransportRead, EndsIfADeviceIsReadyForFiveSecondsWithoutBytes) {
  device.alwaysReadable = true;
  device.readResult = [] {
    return -ENODEV;
  };
  EXPECT_EQ(read(10), Bytes());
  EXPECT_EQ(system.now(), 5 * Second);
  EXPECT_EQ(system.briefPauses, std::vector<unsigned int>(5000, 1000));
}

TEST_F(TransportRead, TreatsEmptyTransfersAsNoBytes) {
  device.alwaysReadable = true;
  for (int transfer = 0; transfer < 10'000; ++transfer) {
    device.reply({});
  }
  EXPECT_EQ(read(10), Bytes());
  EXPECT_EQ(system.now(), 5 * Second);
}

TEST_F(TransportRead, RestartsTheDeadlineOfAReadyDeviceWithEachByte) {
  device.alwaysReadable = true;
  device.reply(bytes("01"), 4 * Second);
  device.reply(bytes("02"), 8 * Second);
  EXPECT_EQ(read(10), bytes("01 02"));
  EXPECT_EQ(system.now(), 13 * Second);
}

TEST_F(TransportRead, RestartsTheDeadlineOfAReadyDeviceAfterATimeout) {
  // The device is always readable, but has no bytes. Only four probes time out, one every 3
  // seconds.
  virtual_system::Microseconds lastSilence = 0;
  int silences = 0;
  device.readSelectResult = [&] {
    if (silences < 4 && system.now() - lastSilence >= 3 * Second) {
      lastSilence = system.now();
      ++silences;
      return 0;
    }
    return 1;
  };
  EXPECT_EQ(read(10), Bytes());
  EXPECT_EQ(silences, 4);
  EXPECT_EQ(system.now(), (12 + 5) * Second);
}

TEST_F(TransportRead, EndsEvenIfTheClockIsSetBackContinuously) {
  device.alwaysReadable = true;
  device.readResult = [&] {
    --system.clockShift;
    return -EIO;
  };
  EXPECT_EQ(read(10), Bytes());
  EXPECT_EQ(system.briefPauses.size(), 5000U);
}

// --- Over libusb --------------------------------------------------------------------------------

TEST(TransportReadOverLibUsb, EndsFiveSecondsOfProbesAfterTheLastByte) {
  virtual_system::System system;
  fake_libusb::Library library;
  library.addPrinter("002", "005");
  const TransportUser transport;
  ASSERT_EQ(transport->CT_Open("2:5"), 0);
  library.incoming = pattern(20);
  Bytes buffer(1000);
  EXPECT_EQ(transport->CT_Read(buffer.data(), buffer.size()), 20);
  // First the connector's own wait, then the probes of 1 s each.
  EXPECT_EQ(library.readTimeouts, (std::vector<int>{10000, 10000, 1000, 1000, 1000, 1000, 1000}));
  EXPECT_EQ(system.now(), 15 * Second);
}
