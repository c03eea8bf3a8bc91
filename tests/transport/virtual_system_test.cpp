#include "testing/virtual_system.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/select.h>
#include <unistd.h>

#include "testing/bytes.h"

// The delay of a busy machine, which the failure tests use.

using support::bytes;
using virtual_system::Device;
using virtual_system::System;

namespace {

constexpr virtual_system::Microseconds Limit = 1000;
constexpr virtual_system::Microseconds Delay = 99'000;

class VirtualSystemDelay : public testing::Test {
 protected:
  VirtualSystemDelay() { system.delay = Delay; }

  /// Waits for input with the limit of 1 ms. Returns the result of select.
  static int waitForInput(int descriptor) {
    fd_set reading;
    FD_ZERO(&reading);
    FD_SET(descriptor, &reading);
    timeval limit{.tv_sec = 0, .tv_usec = Limit};
    return select(descriptor + 1, &reading, nullptr, nullptr, &limit);
  }

  System system;
};

TEST_F(VirtualSystemDelay, IsAddedToAWaitWithoutInput) {
  system.device("/dev/usb/lp0");
  const int descriptor = open("/dev/usb/lp0", O_RDWR);
  EXPECT_EQ(waitForInput(descriptor), 0);
  EXPECT_EQ(system.now(), Limit + Delay);
  close(descriptor);
}

TEST_F(VirtualSystemDelay, EndsWhenInputArrives) {
  Device& device = system.device("/dev/usb/lp0");
  const int descriptor = open("/dev/usb/lp0", O_RDWR);
  device.reply(bytes("A5"), Delay / 2);
  EXPECT_EQ(waitForInput(descriptor), 1);
  EXPECT_EQ(system.now(), Delay / 2);
  close(descriptor);
}

TEST_F(VirtualSystemDelay, IsAddedToABriefPause) {
  usleep(Limit);
  EXPECT_EQ(system.now(), Limit + Delay);
}

}  // namespace
