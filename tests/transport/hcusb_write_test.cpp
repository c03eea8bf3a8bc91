#include <algorithm>
#include <cerrno>
#include <gtest/gtest.h>
#include <limits>
#include <vector>

#include "testing/bytes.h"
#include "testing/fake_libusb.h"
#include "testing/open_transport.h"

using support::Bytes;
using support::bytes;
using support::pattern;
using support::TransportUser;
using virtual_system::Second;

namespace {

class TransportWrite : public support::OpenTransport {
 protected:
  long write(const Bytes& data) {
    Bytes copy = data;
    return transport->CT_Write(copy.data(), copy.size(), 0);
  }

  long writeRequest(const Bytes& data) {
    Bytes copy = data;
    return transport->writeRequest(copy);
  }

  /// Sets the results of the writes, in order. Further writes get the last of `results`. A result
  /// is a count of bytes or a negative errno.
  void setResults(std::vector<int> results) {
    device.writeResult = [this, results](std::size_t size) {
      ++calls;
      requested.push_back(size);
      return results[std::min(calls, results.size()) - 1];
    };
  }

  /// Returns the bytes that the device accepted, in order.
  Bytes accepted() const {
    Bytes all;
    for (const Bytes& piece : device.writes) {
      all.insert(all.end(), piece.begin(), piece.end());
    }
    return all;
  }

  std::size_t calls = 0;
  std::vector<std::size_t> requested;
};

}  // namespace

// --- CT_Write: one write of the connector -------------------------------------------------------

TEST_F(TransportWrite, ReturnsTheConnectorsCount) {
  EXPECT_EQ(write(bytes("A5 00 06")), 3);
  EXPECT_EQ(device.writes, std::vector<Bytes>{bytes("A5 00 06")});
}

TEST_F(TransportWrite, ReturnsAShortCount) {
  setResults({4});
  EXPECT_EQ(write(pattern(10)), 4);
  EXPECT_EQ(calls, 1U);
}

TEST_F(TransportWrite, ReturnsMinusOneForAFailure) {
  setResults({-EIO});
  EXPECT_EQ(write(pattern(10)), -1);
}

TEST_F(TransportWrite, IgnoresTheTimeout) {
  setResults({-EAGAIN});
  Bytes data = pattern(3);
  EXPECT_EQ(
      transport->CT_Write(data.data(), data.size(), std::numeric_limits<unsigned long>::max()), -1);
  EXPECT_EQ(system.now(), 0);
  EXPECT_EQ(calls, 1U);
}

// --- writeRequest over usblp: writes the rest of a request --------------------------------------

TEST_F(TransportWrite, WritesARequestOnceIfAllBytesAreAccepted) {
  EXPECT_EQ(writeRequest(pattern(10)), 10);
  EXPECT_EQ(device.writes.size(), 1U);
  EXPECT_EQ(system.now(), 0);
}

TEST_F(TransportWrite, DoesNotRepeatARequestThatFailsImmediately) {
  for (const int result : {-EAGAIN, -EIO, 0}) {
    calls = 0;
    setResults({result});
    EXPECT_EQ(writeRequest(pattern(10)), result < 0 ? -1 : 0);
    EXPECT_EQ(calls, 1U);
    EXPECT_EQ(system.now(), 0);
  }
}

TEST_F(TransportWrite, WritesTheRestOfARequestAfterAShortWrite) {
  setResults({4, 1, 5});
  EXPECT_EQ(writeRequest(pattern(10)), 10);
  EXPECT_EQ(requested, (std::vector<std::size_t>{10, 6, 5}));
  EXPECT_EQ(accepted(), pattern(10));
  EXPECT_TRUE(system.briefPauses.empty());
}

TEST_F(TransportWrite, RetriesTheRestOfARequestAfterEagain) {
  setResults({8, -EAGAIN, -EAGAIN, -EAGAIN, 2});
  EXPECT_EQ(writeRequest(pattern(10)), 10);
  EXPECT_EQ(accepted(), pattern(10));
  EXPECT_EQ(system.briefPauses, std::vector<unsigned int>(3, 1000));
}

TEST_F(TransportWrite, EndsARequestAfterFiveSecondsOfEagain) {
  setResults({8, -EAGAIN});
  EXPECT_EQ(writeRequest(pattern(10)), 8);
  EXPECT_EQ(system.now(), 5 * Second);
  EXPECT_EQ(system.briefPauses, std::vector<unsigned int>(5000, 1000));
}

TEST_F(TransportWrite, EndsARequestFiveSecondsAfterTheFirstWrite) {
  virtual_system::Microseconds nextByte = 0;
  device.writeResult = [&](std::size_t) {
    if (system.now() < nextByte) {
      return -EAGAIN;
    }
    nextByte = system.now() + 2 * Second;
    return 1;
  };
  EXPECT_EQ(writeRequest(pattern(10)), 3);
  EXPECT_EQ(system.now(), 5 * Second);
}

TEST_F(TransportWrite, EndsARequestAfterFiveSecondsOfEmptyWrites) {
  setResults({8, 0});
  EXPECT_EQ(writeRequest(pattern(10)), 8);
  EXPECT_EQ(system.now(), 5 * Second);
}

TEST_F(TransportWrite, EndsARequestImmediatelyIfTheRestFails) {
  for (const int error : {EIO, ENODEV, EINTR}) {
    calls = 0;
    setResults({8, -error});
    EXPECT_EQ(writeRequest(pattern(10)), 8) << "error " << error;
    EXPECT_EQ(calls, 2U) << "error " << error;
    EXPECT_EQ(system.now(), 0) << "error " << error;
  }
}

TEST_F(TransportWrite, EndsARequestImmediatelyIfTheDeviceFailsAfterEagain) {
  setResults({8, -EAGAIN, -EAGAIN, -ENODEV});
  EXPECT_EQ(writeRequest(pattern(10)), 8);
  EXPECT_EQ(calls, 4U);
  EXPECT_EQ(system.now(), 2000);
}

// --- writeRequest over libusb -------------------------------------------------------------------

TEST(TransportRequestOverLibUsb, EndsAfterAShortCount) {
  virtual_system::System system;
  fake_libusb::Library library;
  library.addPrinter("002", "005");
  library.bulkWrite = [&](const Bytes& chunk) {
    return library.written.empty() ? static_cast<int>(chunk.size()) : -32;
  };
  const TransportUser transport;
  ASSERT_EQ(transport->CT_Open("2:5"), 0);
  Bytes data = pattern(100);
  EXPECT_EQ(transport->writeRequest(data), 64);
  EXPECT_EQ(library.chunkSizes, (std::vector<int>{64, 36}));
  EXPECT_EQ(system.now(), 0);
}
