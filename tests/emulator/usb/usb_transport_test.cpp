#include "emulator/usb/usb_transport.h"

#include <algorithm>
#include <chrono>
#include <gtest/gtest.h>
#include <optional>
#include <poll.h>
#include <string>
#include <vector>

#include "testing/bytes.h"
#include "testing/loopback_client.h"
#include "testing/packets.h"
#include "testing/usb_printer.h"
#include "testing/usbip_host.h"

// Tests of the transport at a TCP port. The hosts are sockets of the test.

namespace {

using emulator::UsbDirection;
using emulator::UsbFault;
using emulator::UsbTraits;
using emulator::UsbTransport;
using npa::Bytes;
using packets::IpReply;
using packets::QueryIp;
using support::controlCommand;
using support::imported;
using support::importRequest;
using support::joined;
using support::listed;
using support::listRequest;
using support::LoopbackClient;
using support::readCommand;
using support::submitReply;
using support::unlinkCommand;
using support::unlinkReply;
using support::writeCommand;

class ServedPrinter : public testing::Test {
 protected:
  void serve(const UsbTraits& traits = {}, const emulator::Personality& personality = {}) {
    m_Printer.emplace(traits, personality);
    m_Log.emplace([this](std::string_view line) { log.emplace_back(line); }, false);
    transport.emplace(m_Printer->device, *m_Log, 0);
  }

  /// Runs the transport until the condition holds. Returns false at the deadline. All calls of a
  /// test share the deadline of 5 s, so that a failing test ends soon.
  template <typename Condition>
  bool runUntil(Condition condition) {
    constexpr int pollMilliseconds = 10;
    do {
      transport->sendDue();
      if (condition()) {
        return true;
      }
      std::vector<pollfd> awaited = transport->awaited();
      if (::poll(awaited.data(), awaited.size(), pollMilliseconds) > 0) {
        transport->receiveAll();
      }
    } while (std::chrono::steady_clock::now() < m_Deadline);
    return false;
  }

  /// Sends a message from a host. Expects the transport's reply.
  void ask(const LoopbackClient& host, const Bytes& message, const Bytes& expected) {
    host.send(message);
    Bytes reply;
    EXPECT_TRUE(runUntil([&] {
      reply = joined({reply, host.receiveNow()});
      return reply.size() >= expected.size();
    }));
    EXPECT_EQ(reply, expected);
  }

  bool closes(const LoopbackClient& host) {
    return runUntil([&] { return host.isClosed(); });
  }

  /// Imports the printer and configures it.
  void attach(const LoopbackClient& host) {
    ask(host, importRequest("1-1"), imported());
    ask(host, controlCommand(1, {0x00, 9, 1, 0, 0}), submitReply(1, 0, 0));
  }

  /// Advances the printer's clock. The transport itself uses the real clock.
  void pass(std::chrono::seconds time) { m_Printer->printer.now += time; }

  std::vector<std::string> log;
  std::optional<UsbTransport> transport;

 private:
  std::optional<support::UsbPrinter> m_Printer;
  std::optional<emulator::MessageLog> m_Log;
  const std::chrono::steady_clock::time_point m_Deadline =
      std::chrono::steady_clock::now() + std::chrono::seconds(5);
};

TEST_F(ServedPrinter, IsListedImportedAndUsed) {
  serve();
  EXPECT_NE(transport->port(), 0);
  EXPECT_EQ(transport->printerNode(), std::nullopt);
  const LoopbackClient lister(transport->port());
  ask(lister, listRequest(), listed());
  const LoopbackClient host(transport->port());
  attach(host);
  ask(host, joined({readCommand(2, 1024), readCommand(3, 1024), writeCommand(4, QueryIp)}),
      joined({submitReply(4, 0, 9), submitReply(2, 0, 15, IpReply)}));
  ask(host, unlinkCommand(5, 3), unlinkReply(5, 0xFFFFFF98));
}

TEST_F(ServedPrinter, IsUsedByOneHostAtATime) {
  serve();
  const LoopbackClient second(transport->port());
  {
    const LoopbackClient first(transport->port());
    attach(first);
    ask(second, importRequest("1-1"), support::notImported(2));
  }
  EXPECT_TRUE(runUntil([&] { return log.back() == "   USB: the host has disconnected"; }));
  attach(second);
}

TEST_F(ServedPrinter, IsResetForTheNextHost) {
  serve();
  {
    const LoopbackClient first(transport->port());
    attach(first);
    ask(first, joined({writeCommand(2, QueryIp), writeCommand(3, Bytes(1, 0xA5))}),
        joined({submitReply(2, 0, 9), submitReply(3, 0, 1)}));
  }
  EXPECT_TRUE(runUntil([&] { return log.back() == "   USB: the host has disconnected"; }));
  const LoopbackClient second(transport->port());
  attach(second);
  ask(second, joined({readCommand(2, 64), writeCommand(3, QueryIp)}),
      joined({submitReply(3, 0, 9), submitReply(2, 0, 15, IpReply)}));
}

TEST_F(ServedPrinter, DropsAHostThatViolatesTheProtocol) {
  serve();
  const LoopbackClient good(transport->port());
  attach(good);
  const LoopbackClient bad(transport->port());
  bad.send(Bytes(8, 0xFF));
  EXPECT_TRUE(closes(bad));
  EXPECT_EQ(log.back(), "   USB: disconnected the host: unknown version of the protocol");
  ask(good, writeCommand(2, QueryIp), submitReply(2, 0, 9));
  good.send(Bytes(48, 0xFF));
  EXPECT_TRUE(closes(good));
  const LoopbackClient next(transport->port());
  attach(next);
}

TEST_F(ServedPrinter, IsUnpluggedAndPluggedInAgain) {
  serve();
  const LoopbackClient host(transport->port());
  attach(host);
  transport->unplug();
  EXPECT_FALSE(transport->isPluggedIn());
  EXPECT_TRUE(closes(host));
  const LoopbackClient lister(transport->port());
  ask(lister, listRequest(), support::nothingListed());
  ask(lister, importRequest("1-1"), support::notImported(4));
  transport->plugIn();
  attach(lister);
}

TEST_F(ServedPrinter, CompletesTheWriteBeforeAnUnplugFault) {
  serve({.faults = {{UsbFault::Kind::Unplug, UsbDirection::Out, 9}},
         .replugAfter = std::chrono::seconds(3600)});
  const LoopbackClient host(transport->port());
  attach(host);
  ask(host, writeCommand(2, QueryIp), submitReply(2, 0, 9));
  EXPECT_TRUE(closes(host));
  EXPECT_FALSE(transport->isPluggedIn());
  ASSERT_TRUE(transport->nextDue());
  EXPECT_GT(*transport->nextDue(), UsbTransport::Clock::now() + std::chrono::seconds(3500));
}

TEST_F(ServedPrinter, IsPluggedInAgainAfterItsDelay) {
  serve({.faults = {{UsbFault::Kind::Unplug, UsbDirection::Out, 9}},
         .replugAfter = std::chrono::seconds(0)});
  const LoopbackClient host(transport->port());
  attach(host);
  ask(host, writeCommand(2, QueryIp), submitReply(2, 0, 9));
  EXPECT_TRUE(closes(host));
  EXPECT_TRUE(runUntil([&] { return transport->isPluggedIn(); }));
  const LoopbackClient again(transport->port());
  attach(again);
  ask(again, writeCommand(2, QueryIp), submitReply(2, 0, 9));
}

TEST_F(ServedPrinter, IsGoneFromTheBusDuringARestart) {
  constexpr std::chrono::seconds length(3600);
  serve({}, {.restartAfterStore = length});
  const LoopbackClient host(transport->port());
  attach(host);
  ask(host, joined({readCommand(2, 64), writeCommand(3, packets::StoreSsid)}),
      joined({submitReply(3, 0, 15), submitReply(2, 0, 8, packets::SettingsStored)}));
  EXPECT_TRUE(transport->isPluggedIn());
  pass(std::chrono::seconds(6));
  EXPECT_TRUE(closes(host));
  EXPECT_FALSE(transport->isPluggedIn());
  ASSERT_TRUE(transport->nextDue());
  EXPECT_GT(*transport->nextDue(), UsbTransport::Clock::now() + std::chrono::seconds(3500));
  const LoopbackClient lister(transport->port());
  ask(lister, listRequest(), support::nothingListed());
}

TEST_F(ServedPrinter, ReturnsToTheBusAfterARestart) {
  serve({}, {.restartAfterStore = std::chrono::seconds(0)});
  const LoopbackClient host(transport->port());
  attach(host);
  ask(host, joined({readCommand(2, 64), writeCommand(3, packets::StoreSsid)}),
      joined({submitReply(3, 0, 15), submitReply(2, 0, 8, packets::SettingsStored)}));
  pass(std::chrono::seconds(6));
  EXPECT_TRUE(closes(host));
  EXPECT_TRUE(runUntil([&] { return transport->isPluggedIn(); }));
  const LoopbackClient again(transport->port());
  attach(again);
  ask(again, joined({readCommand(2, 64), writeCommand(3, QueryIp)}),
      joined({submitReply(3, 0, 9), submitReply(2, 0, 15, IpReply)}));
}

TEST_F(ServedPrinter, StaysUnpluggedWithoutADelay) {
  serve({.faults = {{UsbFault::Kind::Unplug, UsbDirection::Out, 9}}});
  const LoopbackClient host(transport->port());
  attach(host);
  host.send(writeCommand(2, QueryIp));
  EXPECT_TRUE(runUntil([&] { return !transport->isPluggedIn(); }));
  EXPECT_FALSE(transport->nextDue());
}

TEST_F(ServedPrinter, ServesAWaitingHostOnceThereIsRoom) {
  constexpr std::size_t most = 16;
  serve();
  std::vector<LoopbackClient> hosts;
  for (std::size_t i = 0; i < most + 1; ++i) {
    hosts.emplace_back(transport->port());
    EXPECT_TRUE(hosts.back().isConnected());
    // `awaited` includes the listening socket only while there is room for another host.
    EXPECT_TRUE(runUntil([&] { return transport->awaited().size() == std::min(i + 2, most); }));
  }
  hosts.erase(hosts.begin());
  ask(hosts.back(), listRequest(), listed());
}

}  // namespace
