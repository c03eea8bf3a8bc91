#pragma once

#include <gtest/gtest.h>

#include "testing/bytes.h"
#include "testing/transport_user.h"
#include "testing/virtual_system.h"

namespace support {

/// Tests of a channel that is open to /dev/usb/lp0.
class UsblpChannel : public testing::Test {
 protected:
  UsblpChannel() { EXPECT_EQ(transport->CT_Open("/dev/usb/lp0"), 0); }

  /// What CT_Read of `len` bytes gives.
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
