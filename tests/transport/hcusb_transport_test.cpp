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

// --- The one instance ---------------------------------------------------------------------------

TEST(TransportInstance, IsOneForAllUsersAndGoesWithTheLast) {
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

TEST(TransportInstance, IsMadeAnewAfterTheLastUser) {
  for (int round = 0; round < 2; ++round) {
    EXPECT_NE(HCUSBTransport::GetInstance(), nullptr);
    EXPECT_EQ(outputOf(HCUSBTransport::DestroyInstance), DestructionLine);
  }
}

TEST(TransportInstance, ClosesAnOpenChannelWhenItGoes) {
  System system;
  const auto& device = system.device("/dev/usb/lp0");
  {
    const TransportUser transport;
    EXPECT_EQ(transport->CT_Open("/dev/usb/lp0"), 0);
    EXPECT_TRUE(device.isOpen);
  }
  EXPECT_FALSE(device.isOpen);
}

TEST(TransportInstance, IsNotDeletedByAReleaseTooMany) {
  EXPECT_EQ(outputOf(HCUSBTransport::DestroyInstance), Output());
  // The count is below zero: the next user makes it zero again, and the one after that counts.
  HCUSBTransport* const first = HCUSBTransport::GetInstance();
  EXPECT_EQ(HCUSBTransport::GetInstance(), first);
  EXPECT_EQ(outputOf(HCUSBTransport::DestroyInstance), DestructionLine);
}

// --- Without a channel --------------------------------------------------------------------------

TEST(TransportWithoutConnector, FailsAtOnce) {
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

TEST(TransportClose, KeepsTheConnectorClosed) {
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
