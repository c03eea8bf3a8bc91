#include "emulator/usb/vhci_port.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <stdexcept>
#include <string>

#include "testing/files.h"

namespace {

namespace fs = std::filesystem;

using emulator::freeVhciPort;
using emulator::isVhciPortFree;
using emulator::UsbSpeed;
using emulator::VhciPort;

const char* const Status =
    "hub port sta spd dev      sockfd local_busid\n"
    "hs  0000 006 003 00010001 000003 1-1\n"
    "hs  0001 005 000 00000000 000000 0-0\n"
    "hs  0002 004 000 00000000 000000 0-0\n"
    "hs  0003 004 000 00000000 000000 0-0\n"
    "ss  0008 004 000 00000000 000000 0-0\n";

TEST(VhciStatus, HasTheFirstFreePortOfTheSpeed) {
  EXPECT_EQ(freeVhciPort(Status), 2U);
  EXPECT_EQ(freeVhciPort("hub port sta spd dev      sockfd local_busid\n"
                         "hs  0000 006 003 00010001 000003 1-1\n"
                         "ss  0008 004 000 00000000 000000 0-0\n"),
            std::nullopt);
}

TEST(VhciStatus, HasNoFreePortIfItIsMalformed) {
  EXPECT_EQ(freeVhciPort(""), std::nullopt);
  EXPECT_EQ(freeVhciPort("hs\nhs  x 004\nhs  0001\n\n"), std::nullopt);
  EXPECT_EQ(freeVhciPort("hs  99999999999999999999 004"), std::nullopt);
}

TEST(VhciStatus, SaysWhetherAPortIsFree) {
  EXPECT_TRUE(isVhciPortFree(Status, 3));
  EXPECT_FALSE(isVhciPortFree(Status, 0));
  EXPECT_FALSE(isVhciPortFree(Status, 1));
  EXPECT_FALSE(isVhciPortFree(Status, 8));
  EXPECT_FALSE(isVhciPortFree(Status, 4));
}

/// A folder with the files of the controller.
class FakeController {
 public:
  explicit FakeController(const std::string& status = Status) {
    std::ofstream(path("status")) << status;
    std::ofstream(path("attach"));
    std::ofstream(path("detach"));
  }

  std::string path(const char* name) const { return m_Folder.path(name); }
  fs::path folder() const { return m_Folder.path(""); }

 private:
  support::TemporaryFolder m_Folder;
};

TEST(VhciPort, AttachesToAFreePort) {
  const FakeController controller;
  for (const auto& [speed, number] : {std::pair(UsbSpeed::Full, 2U), {UsbSpeed::High, 3U}}) {
    VhciPort port(speed, controller.folder());
    EXPECT_TRUE(port.takeConnection());
    unsigned portNumber = 0;
    unsigned socket = 0;
    unsigned device = 0;
    unsigned speedNumber = 0;
    ASSERT_EQ(std::sscanf(support::fileContent(controller.path("attach")).c_str(), "%u %u %u %u",
                          &portNumber, &socket, &device, &speedNumber),
              4);
    EXPECT_EQ(portNumber, 2U);
    EXPECT_GT(socket, 2U);
    EXPECT_EQ(device, 0x00010001U);
    EXPECT_EQ(speedNumber, number);
  }
  EXPECT_EQ(support::fileContent(controller.path("detach")), "2");
}

std::string reason(const fs::path& folder) {
  try {
    const VhciPort port(UsbSpeed::High, folder);
  } catch (const std::runtime_error& error) {
    return error.what();
  }
  return "plugged in";
}

TEST(VhciPort, ReportsAMissingControllerOrPort) {
  EXPECT_EQ(reason("/nonexistent"),
            "/nonexistent/attach: no virtual USB host controller\n"
            "Load its kernel module: modprobe vhci-hcd");
  EXPECT_EQ(reason(FakeController("hs  0000 006 003\n").folder()),
            "the virtual USB host controller has no free port\n"
            "Detach one of its devices: usbip detach");
}

TEST(VhciPort, FindsThePrintersNodeUnderItsPort) {
  const FakeController controller;
  const VhciPort port(UsbSpeed::High, controller.folder());
  EXPECT_EQ(port.printerNode(), std::nullopt);
  // One node is at another port. The other node does not exist in /dev yet.
  fs::create_directories(controller.path("usb3/3-1/3-1:1.0/usbmisc/null"));
  fs::create_directories(controller.path("usb3/3-3/3-3:1.0/usbmisc/no-such-device"));
  EXPECT_EQ(port.printerNode(), std::nullopt);
}

}  // namespace
