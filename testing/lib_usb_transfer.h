#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <gtest/gtest.h>
#include <utility>
#include <vector>

#include "testing/bytes.h"
#include "testing/fake_libusb.h"
#include "testing/rows.h"
#include "testing/virtual_system.h"
#include "transport/lib_usb_connector.h"

namespace support {

/// Transfer types in the attributes of an endpoint.
inline constexpr std::uint8_t Bulk = 2;
inline constexpr std::uint8_t Interrupt = 3;

/// A row of a table: libusb's result for a bulk transfer, and the connector's status after it.
struct TransferRow : Row {
  int result;
  HCIOStatus status;
};

/// A fixture for tests of bulk transfers. Each test calls `open` first.
class LibUsbTransfer : public testing::Test {
 protected:
  void open(std::vector<fake_libusb::Endpoint> endpoints = {{0x81, Bulk, 64}, {0x02, Bulk, 512}}) {
    library.addDevice("001", "002", {{1, {{{7, 0, std::move(endpoints)}}}}});
    ASSERT_EQ(connector.open(1, 2), 0);
    library.calls.clear();
  }

  int write(const Bytes& data) {
    Bytes copy = data;
    return connector.write(copy.data(), static_cast<int>(copy.size()));
  }

  /// Reads at most `len` bytes with the connector and returns the bytes that were read.
  Bytes read(int len) {
    Bytes buffer(static_cast<std::size_t>(len));
    const int count = connector.read(buffer.data(), len);
    EXPECT_LE(count, len);
    buffer.resize(static_cast<std::size_t>(count));
    return buffer;
  }

  /// Sets the results of the bulk writes: the n-th write returns the n-th of `results`, and all
  /// later writes return the last of them. The result 64 stands for the whole size of the write.
  void answerWrites(std::vector<int> results) {
    library.bulkWrite = [results, next = std::size_t{0}](const Bytes& chunk) mutable {
      const int result = results[next];
      next = std::min(next + 1, results.size() - 1);
      return result == 64 ? static_cast<int>(chunk.size()) : result;
    };
  }

  /// Makes the connector store `stored` bytes in its ring buffer.
  void fillRing(int stored) {
    library.incoming = pattern(static_cast<std::size_t>(stored));
    while (!library.incoming.empty()) {
      ASSERT_EQ(connector.isReadReady(0), IO_READ_READY);
    }
  }

  virtual_system::System system;
  fake_libusb::Library library;
  LibUsbConnector connector{7};
};

}  // namespace support
