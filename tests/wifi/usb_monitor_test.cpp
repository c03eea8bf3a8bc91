#include "wifi/usb_monitor.h"

#include <gtest/gtest.h>

// tests/kernel/assertions/94-station plugs in real devices.

TEST(UsbMonitor, HasNoEventsIfNothingHappens) {
  const auto monitor = wifi::openUsbMonitor();
  EXPECT_GE(monitor->descriptor(), 0);
  monitor->takeEvents();
  EXPECT_FALSE(monitor->takeEvents());
}
