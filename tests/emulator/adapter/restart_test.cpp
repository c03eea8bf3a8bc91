#include <chrono>
#include <gtest/gtest.h>
#include <string>

#include "testing/bytes.h"
#include "testing/emulated_printer.h"
#include "testing/object_store.h"
#include "testing/packets.h"

// The adapter's restart after it has stored settings (--restart-after-store).

namespace {

using npa::Bytes;
using packets::QueryIp;
using packets::QuerySsid;
using packets::SettingsStored;
using packets::StoreSsid;
using Printer = support::EmulatedPrinter;
using support::bytes;
using support::joined;
using namespace std::chrono_literals;

const Bytes SsidReply = bytes("A5 00 0B 50 E0 D8 00 28 08 00 03 61 62 00");

TEST(Restart, IsSilentForItsTimeAndKeepsWhatIsStored) {
  Printer printer({.restartAfterStore = 3s});
  EXPECT_EQ(printer.ask(StoreSsid), SettingsStored);
  EXPECT_EQ(printer.log.back(), "   restarts: no answer for 3 s");
  EXPECT_EQ(printer.ask(QuerySsid), Bytes());
  EXPECT_EQ(printer.log.back(), "   9 bytes dropped during the restart");
  printer.now += 2999ms;
  EXPECT_EQ(printer.ask(QuerySsid), Bytes());
  printer.now += 1ms;
  EXPECT_EQ(printer.ask(QuerySsid), SsidReply);
}

TEST(Restart, OccursOnlyAfterSettingsAreStored) {
  Printer none;
  none.ask(StoreSsid);
  EXPECT_EQ(none.ask(QuerySsid), SsidReply);
  Printer printer({.restartAfterStore = 3s});
  printer.ask(QuerySsid);
  EXPECT_EQ(printer.ask(QueryIp), packets::IpReply);
  Printer rejecting({.settingsResult = 2, .restartAfterStore = 3s});
  rejecting.ask(StoreSsid);
  EXPECT_EQ(rejecting.ask(QueryIp), packets::IpReply);
  Printer refusing({.refuseWrapped = true, .restartAfterStore = 3s});
  EXPECT_EQ(refusing.ask(packets::wrapped(StoreSsid)), packets::Refused);
  EXPECT_EQ(refusing.ask(StoreSsid), SettingsStored);
  EXPECT_EQ(refusing.ask(StoreSsid), Bytes());
}

TEST(Restart, DoesNotFollowAChangeOfCertificates) {
  Printer printer({.restartAfterStore = 3s});
  printer.ask(support::callPackets(support::generateText("n")));
  EXPECT_NE(printer.adapter.certificates().findDevice("n"), nullptr);
  EXPECT_EQ(printer.ask(QueryIp), packets::IpReply);
}

TEST(Restart, DropsLaterPacketsAndPartsOfPackets) {
  const Bytes firstHalf(QuerySsid.begin(), QuerySsid.begin() + 5);
  const Bytes secondHalf(QuerySsid.begin() + 5, QuerySsid.end());
  Printer printer({.restartAfterStore = 3s});
  EXPECT_EQ(printer.ask(joined({StoreSsid, QuerySsid, firstHalf})), SettingsStored);
  printer.now += 3s;
  EXPECT_EQ(printer.ask(secondHalf), Bytes());
  EXPECT_EQ(printer.ask(StoreSsid), SettingsStored);
  EXPECT_EQ(printer.ask(firstHalf), Bytes());
  printer.now += 3s;
  EXPECT_EQ(printer.ask(secondHalf), Bytes());
  EXPECT_EQ(printer.ask(QuerySsid), SsidReply);
}

TEST(Restart, BeginsWhenTheReplyIsSent) {
  Printer printer({.replyDelay = 2s, .pieceSize = 4, .restartAfterStore = 3s});
  EXPECT_EQ(printer.ask(StoreSsid), SettingsStored);
  printer.now += 5s;
  // The second piece of the reply is sent 20 ms after the first one.
  EXPECT_EQ(printer.ask(QuerySsid), Bytes());
  printer.now += 20ms;
  EXPECT_EQ(printer.ask(QuerySsid), SsidReply);
}

TEST(Restart, StartsTheTimeUntilTheAddress) {
  Printer printer({.addressAcquired = {.afterTime = 5s}, .restartAfterStore = 3s});
  printer.now += 60s;
  EXPECT_EQ(printer.ask(QueryIp), packets::IpReply);
  printer.ask(StoreSsid);
  printer.now += 7s;
  EXPECT_EQ(printer.ask(QueryIp).back(), 0);
  printer.now += 1s;
  EXPECT_EQ(printer.ask(QueryIp), packets::IpReply);
}

TEST(Restart, StartsTheCountOfQueries) {
  Printer printer({.addressAcquired = {.afterQueries = 1}, .restartAfterStore = 3s});
  printer.ask(QueryIp);
  EXPECT_EQ(printer.ask(QueryIp), packets::IpReply);
  printer.ask(StoreSsid);
  printer.now += 3s;
  EXPECT_EQ(printer.ask(QueryIp).back(), 0);
  EXPECT_EQ(printer.ask(QueryIp), packets::IpReply);
}

TEST(Restart, JoinsTheStoredNetwork) {
  Printer printer({.networks = {{"ab", ""}}, .restartAfterStore = 3s});
  EXPECT_EQ(printer.ask(QueryIp).back(), 0);
  printer.ask(StoreSsid);
  printer.now += 3s;
  EXPECT_EQ(printer.ask(QueryIp), packets::IpReply);
}

TEST(Restart, IsReturnedOnceAndPostponed) {
  Printer printer({.restartAfterStore = 3s});
  EXPECT_FALSE(printer.adapter.postponeRestart(6s));
  printer.ask(StoreSsid);
  const auto start = printer.now;
  const auto restart = printer.adapter.postponeRestart(6s);
  ASSERT_TRUE(restart);
  EXPECT_EQ(restart->begin, start + 6s);
  EXPECT_EQ(restart->end, start + 9s);
  EXPECT_FALSE(printer.adapter.postponeRestart(6s));
  printer.now = start + 8999ms;
  EXPECT_EQ(printer.ask(QuerySsid), Bytes());
  printer.now = start + 9s;
  EXPECT_EQ(printer.ask(QuerySsid), SsidReply);
}

}  // namespace
