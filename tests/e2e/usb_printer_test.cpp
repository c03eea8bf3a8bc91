#include <algorithm>
#include <csignal>
#include <cstdint>
#include <gtest/gtest.h>
#include <memory>
#include <string>

#include "testing/bytes.h"
#include "testing/files.h"
#include "testing/loopback_client.h"
#include "testing/packets.h"
#include "testing/process.h"
#include "testing/usbip_host.h"

// Tests of `zvkprinter usb` in which the test is the client. tests/kernel tests `zvkprinter usb`
// with the real kernel.

namespace {

using support::bytes;
using support::fileContent;
using support::LoopbackClient;
using support::runProcess;
using support::TemporaryFolder;

/// An emulated printer at a free TCP port.
class Server {
 public:
  explicit Server(const std::string& options = {})
      : m_Process({"bash", "-c",
                   "exec " ZVKPRINTER " usb --port=0 --log=" + m_Folder.path("log") + " " +
                       options + " > " + m_Folder.path("out")}) {
    EXPECT_TRUE(
        support::eventually([this] { return fileContent(m_Folder.path("out")).ends_with("\n"); }));
  }

  std::string output() const { return fileContent(m_Folder.path("out")); }
  std::string log() const { return fileContent(m_Folder.path("log")); }
  std::uint16_t port() const {
    const std::string text = output();
    return static_cast<std::uint16_t>(std::stoul(text.substr(text.find("port ") + 5)));
  }
  support::BackgroundProcess& process() { return m_Process; }

 private:
  TemporaryFolder m_Folder;
  support::BackgroundProcess m_Process;
};

TEST(ZvkprinterUsb, ServesAPrinterUntilASignal) {
  Server server("--ip=10.0.0.7 --speed=full --usb-slow=100000 --show");
  EXPECT_EQ(server.output(), "The printer is at port " + std::to_string(server.port()) +
                                 " of 127.0.0.1, bus id 1-1\n");
  const LoopbackClient host(server.port());
  host.send(support::importRequest("1-1"));
  EXPECT_EQ(host.receive(320), support::imported(2));
  host.send(
      support::joined({support::controlCommand(1, {0x00, 9, 1, 0, 0}), support::readCommand(2, 64),
                       support::writeCommand(3, packets::QueryIp)}));
  EXPECT_EQ(host.receive(48), support::submitReply(1, 0, 0));
  EXPECT_EQ(host.receive(48), support::submitReply(3, 0, 9));
  EXPECT_EQ(host.receive(63),
            support::submitReply(2, 0, 15, bytes("A5 00 0C 50 E0 D8 00 0A 02 00 04 0A 00 00 07")));
  EXPECT_EQ(server.process().endWith(SIGTERM), 0);
  EXPECT_NE(server.output().find("10.0.0.7"), std::string::npos) << server.output();
}

TEST(ZvkprinterUsb, IsUnpluggedAndPluggedInBySignals) {
  Server server;
  const LoopbackClient host(server.port());
  host.send(support::importRequest("1-1"));
  EXPECT_EQ(host.receive(320).size(), 320U);
  server.process().signal(SIGUSR1);
  EXPECT_EQ(host.receive(1).size(), 0U);
  server.process().signal(SIGUSR1);
  const std::string again = "USB: unplugged\nzvkprinter:    USB: plugged in\n";
  EXPECT_TRUE(support::eventually([&] { return server.log().ends_with(again); }));
  const LoopbackClient next(server.port());
  next.send(support::importRequest("1-1"));
  EXPECT_EQ(next.receive(320).size(), 320U);
  EXPECT_EQ(server.process().endWith(SIGINT), 0);
}

TEST(ZvkprinterUsb, EndsWithTheStatusOfTheCommand) {
  EXPECT_EQ(
      runProcess({ZVKPRINTER, "usb", "--port=0", "--log=/dev/null", "--", "sh", "-c", "exit 7"})
          .status,
      7);
  EXPECT_EQ(
      runProcess({ZVKPRINTER, "usb", "--port=0", "--log=/dev/null", "--", "/nonexistent"}).status,
      127);
}

TEST(ZvkprinterUsb, ReportsAPortInUse) {
  Server server;
  const auto result = runProcess({ZVKPRINTER, "usb", "--port=" + std::to_string(server.port())});
  EXPECT_EQ(result.status, 125);
  EXPECT_EQ(result.err, "zvkprinter: port " + std::to_string(server.port()) +
                            " of 127.0.0.1: Address already in use\n");
}

}  // namespace
