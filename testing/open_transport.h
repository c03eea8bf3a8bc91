#pragma once

#include <gtest/gtest.h>

#include "testing/bytes.h"
#include "testing/transport_user.h"
#include "testing/virtual_system.h"

namespace support {

/// A fixture with a transport that has opened /dev/usb/lp0.
class OpenTransport : public testing::Test {
 protected:
  OpenTransport() { EXPECT_EQ(transport->CT_Open("/dev/usb/lp0"), 0); }

  /// Reads at most `len` bytes with `CT_Read` and returns the bytes that were read.
  Bytes read(std::size_t len) {
    Bytes buffer(len);
    const long count = transport->CT_Read(buffer.data(), len);
    EXPECT_LE(count, static_cast<long>(len));
    buffer.resize(static_cast<std::size_t>(count));
    return buffer;
  }

  virtual_system::System system;
  virtual_system::Device& device = system.device("/dev/usb/lp0");
  TransportUser transport;
};

}  // namespace support
