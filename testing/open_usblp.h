#pragma once

#include <gtest/gtest.h>

#include "testing/bytes.h"
#include "testing/virtual_system.h"
#include "transport/usblp_connector.h"

namespace support {

/// A fixture with a connector that has opened /dev/usb/lp3.
class OpenUsblp : public testing::Test {
 protected:
  OpenUsblp() { EXPECT_EQ(connector.open(), 0); }

  virtual_system::System system;
  virtual_system::Device& device = system.device("/dev/usb/lp3");
  USBLPConnector connector{"/dev/usb/lp", 3};
  Bytes buffer = Bytes(10, 0xEE);
};

}  // namespace support
