#include "emulator/radio/radio.h"

#include <algorithm>
#include <chrono>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <string_view>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>
#include <vector>

#include "testing/bytes.h"
#include "testing/emulated_printer.h"
#include "testing/files.h"
#include "testing/packets.h"
#include "util/unique_fd.h"

// The radio, with doubles of its programs and a control socket that the test serves.

namespace {

using emulator::Radio;
using npa::Bytes;
using support::bytes;
using support::joined;

/// The programs that the radio has started, and those that run.
struct Programs {
  std::vector<std::vector<std::string>> started;
  std::vector<std::string> running;
  bool haveEnded = false;
};

class FakeProgram : public emulator::RadioProgram {
 public:
  FakeProgram(Programs& programs, std::string name)
      : m_Programs(programs), m_Name(std::move(name)) {
    m_Programs.running.push_back(m_Name);
  }
  ~FakeProgram() override { std::erase(m_Programs.running, m_Name); }
  FakeProgram(const FakeProgram&) = delete;
  FakeProgram& operator=(const FakeProgram&) = delete;

  bool hasEnded() override { return m_Programs.haveEnded; }

 private:
  Programs& m_Programs;
  std::string m_Name;
};

/// The other end of the control socket.
class FakeSupplicant {
 public:
  explicit FakeSupplicant(const std::string& folder)
      : m_Socket(::socket(AF_UNIX, SOCK_DGRAM | SOCK_NONBLOCK, 0)) {
    std::filesystem::create_directory(folder + "/control");
    const std::string path = folder + "/control/wlan1";
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::memcpy(&address.sun_path, path.data(), path.size());
    EXPECT_EQ(::bind(m_Socket.get(), reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
  }

  /// Returns the next command, and keeps its sender for `send`.
  std::string command() {
    std::string text(64, '\0');
    m_ClientSize = sizeof m_Client;
    const ssize_t count = ::recvfrom(m_Socket.get(), text.data(), text.size(), 0,
                                     reinterpret_cast<sockaddr*>(&m_Client), &m_ClientSize);
    text.resize(count < 0 ? 0 : static_cast<std::size_t>(count));
    return text;
  }

  void send(std::string_view text) {
    EXPECT_EQ(::sendto(m_Socket.get(), text.data(), text.size(), 0,
                       reinterpret_cast<sockaddr*>(&m_Client), m_ClientSize),
              static_cast<ssize_t>(text.size()));
  }

 private:
  util::UniqueFd m_Socket;
  sockaddr_un m_Client{};
  socklen_t m_ClientSize = 0;
};

const Bytes Home = bytes("28 08 00 00 05 68 6F 6D 65 00");
const Bytes Wpa = bytes("28 22 00 00 04 00 00 00 02");
const Bytes Psk = bytes("28 11 00 00 08 31 32 33 34 35 36 37 38");

class RadioTest : public testing::Test {
 protected:
  void SetUp() override {
    m_Printer.adapter.onChange([this] { m_Radio.settingsChanged(); });
  }

  /// Stores setting objects, and lets the radio work.
  void store(const Bytes& objects) {
    m_Printer.ask(packets::framed(joined({bytes("50 E0 DA 01"), objects})));
    m_Radio.sendDue();
  }

  /// Lets the radio connect to the control socket.
  void attach() {
    m_Printer.now += std::chrono::milliseconds(100);
    m_Radio.sendDue();
    ASSERT_EQ(m_Supplicant.command(), "ATTACH");
    m_Supplicant.send("OK\n");
  }

  void lease(std::string_view line) {
    const util::UniqueFd pipe(::open((m_Radio.folder() + "/lease").c_str(), O_WRONLY));
    ASSERT_EQ(::write(pipe.get(), line.data(), line.size()), static_cast<ssize_t>(line.size()));
    m_Radio.receiveAll();
  }

  int troubleCode() { return m_Printer.ask(packets::QueryTrouble).back(); }
  Bytes address() {
    const Bytes reply = m_Printer.ask(packets::QueryIp);
    return {reply.end() - 4, reply.end()};
  }

  Programs m_Programs;
  support::EmulatedPrinter m_Printer;
  emulator::MessageLog m_Log{[this](std::string_view line) { m_Lines.emplace_back(line); }, false};
  std::vector<std::string> m_Lines;
  Radio m_Radio{"wlan1", m_Printer.adapter, m_Log,
                [this](const std::vector<std::string>& command) {
                  m_Programs.started.push_back(command);
                  return std::make_unique<FakeProgram>(m_Programs, command.front());
                },
                [this] {
                  return m_Printer.now;
                }};
  FakeSupplicant m_Supplicant{m_Radio.folder()};
};

TEST_F(RadioTest, IsInNoNetworkBeforeSettingsAreStored) {
  m_Radio.sendDue();
  EXPECT_TRUE(m_Programs.started.empty());
  EXPECT_EQ(troubleCode(), 2);
  EXPECT_EQ(address(), bytes("00 00 00 00"));
}

TEST_F(RadioTest, StartsTheSupplicantWithTheConfigurationOfTheSettings) {
  store(joined({Home, Wpa, Psk}));
  const std::string file = m_Radio.folder() + "/wpa_supplicant.conf";
  ASSERT_EQ(m_Programs.started.size(), 1U);
  EXPECT_EQ(m_Programs.started[0],
            (std::vector<std::string>{"wpa_supplicant", "-W", "-D", "nl80211,wext", "-i", "wlan1",
                                      "-c", file}));
  EXPECT_NE(support::fileContent(file).find("psk=\"12345678\"\n"), std::string::npos);
  EXPECT_EQ(troubleCode(), 8);
}

TEST_F(RadioTest, GetsAnAddressWhenItIsConnected) {
  store(joined({Home, Wpa, Psk}));
  attach();
  m_Radio.receiveAll();
  EXPECT_EQ(m_Programs.started.size(), 1U);
  m_Supplicant.send("<3>CTRL-EVENT-CONNECTED - Connection completed");
  m_Radio.receiveAll();
  ASSERT_EQ(m_Programs.started.size(), 2U);
  EXPECT_EQ(m_Programs.started[1],
            (std::vector<std::string>{"udhcpc", "-f", "-R", "-i", "wlan1", "-s",
                                      m_Radio.folder() + "/udhcpc-script", "-t", "4", "-T", "2",
                                      "-A", "2"}));
  EXPECT_EQ(troubleCode(), 8);
  lease("bound 10.9.8.20\n");
  EXPECT_EQ(troubleCode(), 0);
  EXPECT_EQ(address(), bytes("0A 09 08 14"));

  m_Supplicant.send("<3>CTRL-EVENT-DISCONNECTED bssid=02:00 reason=3");
  m_Radio.receiveAll();
  EXPECT_EQ(m_Programs.running, (std::vector<std::string>{"wpa_supplicant"}));
  EXPECT_EQ(troubleCode(), 8);
  EXPECT_EQ(address(), bytes("00 00 00 00"));
}

TEST_F(RadioTest, WaitsForTheControlSocket) {
  std::filesystem::remove(m_Radio.folder() + "/control/wlan1");
  store(joined({Home, Wpa, Psk}));
  ASSERT_TRUE(m_Radio.nextDue());
  EXPECT_EQ(*m_Radio.nextDue(), m_Printer.now + std::chrono::milliseconds(100));
  m_Radio.sendDue();
  EXPECT_EQ(m_Radio.awaited().size(), 1U);
  m_Supplicant = FakeSupplicant(m_Radio.folder());
  attach();
  EXPECT_FALSE(m_Radio.nextDue());
  EXPECT_EQ(m_Radio.awaited().size(), 2U);
}

TEST_F(RadioTest, ReportsAWrongKey) {
  store(joined({Home, Wpa, Psk}));
  attach();
  m_Supplicant.send("<3>CTRL-EVENT-SSID-TEMP-DISABLED id=0 ssid=\"home\" reason=WRONG_KEY");
  m_Radio.receiveAll();
  EXPECT_EQ(troubleCode(), 3);
  EXPECT_EQ(m_Printer.log.back(), "   value sent");
  EXPECT_NE(std::ranges::find(m_Printer.log, "   radio: not in a network: wrong key or security"),
            m_Printer.log.end());
}

TEST_F(RadioTest, RestartsWithEachStoreAndForgetsTheOldKeys) {
  store(joined({Home, Wpa, Psk}));
  attach();
  m_Supplicant.send("<3>CTRL-EVENT-SSID-TEMP-DISABLED id=0 ssid=\"home\" reason=WRONG_KEY");
  m_Radio.receiveAll();
  store(joined({Home, Wpa, Psk}));
  EXPECT_EQ(m_Programs.started.size(), 2U);
  EXPECT_EQ(m_Programs.running, (std::vector<std::string>{"wpa_supplicant"}));
  EXPECT_EQ(troubleCode(), 8);

  store(bytes("28 11 00 00 01 31"));
  EXPECT_TRUE(m_Programs.running.empty());
  EXPECT_EQ(troubleCode(), 7);
  EXPECT_EQ(m_Lines.back(), "   radio: the passphrase has fewer than 8 characters");
  EXPECT_FALSE(std::filesystem::exists(m_Radio.folder() + "/wpa_supplicant.conf"));
}

TEST_F(RadioTest, KeepsRunningIfAChangeLeavesTheConfigurationAsItIs) {
  store(joined({Home, Wpa, Psk}));
  m_Radio.settingsChanged();
  m_Radio.sendDue();
  EXPECT_EQ(m_Programs.started.size(), 1U);
}

TEST_F(RadioTest, ReportsTheStatusOfTheAuthentication) {
  store(joined({Home, bytes("28 22 00 00 04 00 00 00 03 2A 17 00 00 01 01 2A 02 00 00 02 61 00"),
                bytes("2A 03 00 00 02 62 00")}));
  attach();
  m_Supplicant.send("<3>CTRL-EVENT-EAP-FAILURE EAP authentication failed");
  m_Radio.receiveAll();
  EXPECT_EQ(troubleCode(), 5);
  EXPECT_EQ(m_Printer.ask(packets::QueryAuthStatus).back(), 9);
  store(bytes("2A 24 00 00 01 01"));
  EXPECT_EQ(troubleCode(), 4);
  EXPECT_EQ(m_Printer.ask(packets::QueryAuthStatus).back(), 11);
}

TEST_F(RadioTest, ReportsASupplicantThatEnds) {
  store(joined({Home, Wpa, Psk}));
  m_Programs.haveEnded = true;
  m_Radio.sendDue();
  EXPECT_EQ(troubleCode(), 7);
  EXPECT_TRUE(m_Programs.running.empty());
  EXPECT_EQ(m_Lines.back(), "   radio: wpa_supplicant has ended");
}

}  // namespace
