#include "transport/hcusb_transport.h"

#include <gtest/gtest.h>

#include "testing/bytes.h"
#include "testing/output.h"
#include "testing/transport_user.h"
#include "testing/virtual_system.h"

using support::bytes;
using support::Output;
using support::outputOf;
using support::TransportUser;
using virtual_system::System;

namespace {

const Output DestructionLine = {"", support::TransportReleased};

}  // namespace

// --- The shared instance------------------------------------------------------------------------

TEST(TransportInstance, IsSharedAndDestroyedWithTheLastUser) {
  HCUSBTransport* first = nullptr;
  HCUSBTransport* second = nullptr;
  EXPECT_EQ(outputOf([&] {
              first = HCUSBTransport::GetInstance();
              second = HCUSBTransport::GetInstance();
            }),
            Output());
  EXPECT_NE(first, nullptr);
  EXPECT_EQ(first, second);
  EXPECT_EQ(outputOf(HCUSBTransport::DestroyInstance), Output());
  EXPECT_EQ(first->CT_Close(), -1);
  EXPECT_EQ(outputOf(HCUSBTransport::DestroyInstance), DestructionLine);
}

TEST(TransportInstance, IsCreatedAgainAfterTheLastUser) {
  for (int round = 0; round < 2; ++round) {
    EXPECT_NE(HCUSBTransport::GetInstance(), nullptr);
    EXPECT_EQ(outputOf(HCUSBTransport::DestroyInstance), DestructionLine);
  }
}

TEST(TransportInstance, ClosesAnOpenConnectorWhenItIsDestroyed) {
  System system;
  const auto& device = system.device("/dev/usb/lp0");
  {
    const TransportUser transport;
    EXPECT_EQ(transport->CT_Open("/dev/usb/lp0"), 0);
    EXPECT_TRUE(device.isOpen);
  }
  EXPECT_FALSE(device.isOpen);
}

TEST(TransportInstance, IsNotDestroyedTwiceByAnExtraRelease) {
  EXPECT_EQ(outputOf(HCUSBTransport::DestroyInstance), Output());
  // The count of users is -1 now. The next user sets it to 0, and the user after that to 1.
  HCUSBTransport* const first = HCUSBTransport::GetInstance();
  EXPECT_EQ(HCUSBTransport::GetInstance(), first);
  EXPECT_EQ(outputOf(HCUSBTransport::DestroyInstance), DestructionLine);
}

// --- Without a connector ------------------------------------------------------------------------

TEST(TransportWithoutConnector, FailsImmediately) {
  System system;
  const TransportUser transport;
  unsigned char byte = 0xEE;
  EXPECT_EQ(transport->CT_Close(), -1);
  EXPECT_EQ(transport->CT_Write(&byte, 1, 0), -1);
  EXPECT_EQ(transport->CT_Read(&byte, 1), 0);
  EXPECT_EQ(transport->writeRequest({&byte, 1}), -1);
  EXPECT_EQ(byte, 0xEE);
  EXPECT_EQ(system.now(), 0);
}

TEST(TransportClose, KeepsTheClosedConnector) {
  System system;
  auto& device = system.device("/dev/usb/lp0");
  const TransportUser transport;
  transport->CT_Open("/dev/usb/lp0");
  EXPECT_EQ(transport->CT_Close(), 0);
  EXPECT_EQ(transport->CT_Close(), -1);
  EXPECT_EQ(device.closes, 1);
  EXPECT_EQ(transport->CT_Open("/dev/usb/lp0"), 0);
  device.closeErrno = 5;
  EXPECT_EQ(transport->CT_Close(), -1);
}

TEST(TransportCallback, IsNeverCalled) {
  System system;
  auto& device = system.device("/dev/usb/lp0");
  static int calls = 0;
  const TransportUser transport;
  transport->CT_RegisterReadCallback([](unsigned char*, int) { return ++calls; });
  transport->CT_Open("/dev/usb/lp0");
  device.reply(bytes("01 02"));
  unsigned char buffer[2] = {};
  EXPECT_EQ(transport->CT_Read(buffer, 2), 2);
  EXPECT_EQ(calls, 0);
}
