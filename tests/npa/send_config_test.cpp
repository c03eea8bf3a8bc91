#include "npa/send_config.h"

#include <gtest/gtest.h>
#include <memory>
#include <string>

#include "testing/output.h"
#include "testing/usblp_printer.h"

using support::bytes;
using support::Output;
using support::outputOf;
using support::TransportReleased;

TEST(SendConfig, HoldsTheTransportWhileItExists) {
  EXPECT_EQ(outputOf([] { const sendConfig exchange("/dev/usb/lp0"); }),
            (Output{"", TransportReleased}));
}

TEST(SendConfig, ReleasesTheTransportWithTheLastObject) {
  auto first = std::make_unique<sendConfig>("/dev/usb/lp0");
  auto second = std::make_unique<sendConfig>("2:5");
  EXPECT_EQ(outputOf([&] { first.reset(); }), Output());
  EXPECT_EQ(outputOf([&] { second.reset(); }), (Output{"", TransportReleased}));
}

TEST(SendConfig, DoesNotOpenADeviceOnItsOwn) {
  virtual_system::System system;
  const auto& device = system.device("/dev/usb/lp0");
  { const sendConfig exchange("/dev/usb/lp0"); }
  EXPECT_EQ(device.opens, 0);
}

TEST(SendConfig, OpensItsOwnPathOverTheSharedTransport) {
  virtual_system::System system;
  auto& first = system.device("/dev/usb/lp0");
  auto& second = system.device("/dev/usb/lp1");
  sendConfig toFirst("/dev/usb/lp0");
  sendConfig toSecond("/dev/usb/lp1");
  auto request = bytes("A5");
  toSecond.setConfig(request.data(), 1);
  EXPECT_EQ(first.opens, 0);
  EXPECT_EQ(second.opens, 1);
  toFirst.setConfig(request.data(), 1);
  EXPECT_EQ(first.opens, 1);
  EXPECT_EQ(second.opens, 1);
}

TEST(SendConfig, KeepsACopyOfThePath) {
  virtual_system::System system;
  auto& device = system.device("/dev/usb/lp3");
  std::string path = "/dev/usb/lp3";
  sendConfig exchange(path);
  path = "changed";
  auto request = bytes("A5");
  exchange.setConfig(request.data(), 1);
  EXPECT_EQ(device.opens, 1);
}
