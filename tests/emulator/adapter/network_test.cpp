#include "emulator/adapter/network.h"

#include <chrono>
#include <gtest/gtest.h>
#include <string>
#include <string_view>
#include <vector>

#include "testing/authority.h"
#include "testing/bytes.h"
#include "testing/emulated_printer.h"
#include "testing/object_store.h"
#include "testing/packets.h"
#include "testing/rows.h"

// Tests that settings put the adapter into a network of --network, or out of it.

namespace {

using emulator::Personality;
using npa::Bytes;
using packets::QueryAuthStatus;
using packets::QueryIp;
using packets::QueryTrouble;
using packets::SettingsStored;
using Printer = support::EmulatedPrinter;
using support::bytes;
using support::joined;
using support::textBytes;

const Bytes NoAddress = bytes("A5 00 0C 50 E0 D8 00 0A 02 00 04 00 00 00 00");

/// Returns a setting object of the group 28 or 2A with this value.
Bytes object(const char* key, const Bytes& value) {
  return joined({bytes(key), bytes("00 00"), {static_cast<std::uint8_t>(value.size())}, value});
}

Bytes security(std::uint8_t code) {
  return object("28 22", {0, 0, 0, code});
}

Bytes ssid(std::string_view text) {
  return object("28 08", textBytes(std::string(text) + '\0'));
}

/// Returns the request that stores the objects.
Bytes store(const Bytes& objects) {
  return packets::framed(joined({bytes("50 E0 DA 01"), objects}));
}

const Personality InReach{.networks = {{"home", "12345678"}, {"a:b", ""}, {"home", "other"}}};

struct NetworkRow : support::Row {
  Bytes objects;
  int troubleCode;
};

class StoredNetwork : public testing::TestWithParam<NetworkRow> {};

TEST_P(StoredNetwork, DeterminesAddressAndTroubleCode) {
  Printer printer(InReach);
  EXPECT_EQ(printer.ask(store(GetParam().objects)), SettingsStored);
  EXPECT_EQ(printer.ask(QueryTrouble).back(), GetParam().troubleCode);
  EXPECT_EQ(printer.ask(QueryIp), GetParam().troubleCode == 0 ? packets::IpReply : NoAddress);
}

/// Returns the objects of the network "home" with a security, and the key at `keyPlace`.
Bytes home(std::uint8_t code, const char* keyPlace, std::string_view key) {
  return joined({ssid("home"), security(code), object(keyPlace, textBytes(key))});
}

constexpr const char* Wep = "28 09";
constexpr const char* Psk = "28 11";
constexpr const char* Password = "2A 03";

INSTANTIATE_TEST_SUITE_P(
    Settings, StoredNetwork,
    testing::Values(
        NetworkRow{{"PreSharedKey"}, home(2, Psk, "12345678"), 0},
        NetworkRow{{"PreSharedKeyOfWpa2"}, home(4, Psk, "12345678"), 0},
        NetworkRow{{"WepKey"}, home(1, Wep, "12345678"), 0},
        NetworkRow{{"Password"}, home(3, Password, "12345678"), 0},
        NetworkRow{{"KeyWithAZeroByte"}, home(2, Psk, {"12345678\0", 9}), 0},
        NetworkRow{{"KeyOfTheSecondNetworkOfThatName"}, home(2, Psk, "other"), 0},
        NetworkRow{{"OpenNetwork"}, joined({ssid("a:b"), security(0)}), 0},
        NetworkRow{{"OpenNetworkWithoutSecurity"}, ssid("a:b"), 0},
        NetworkRow{{"OtherSsid"},
                   joined({ssid("Home"), security(2), object(Psk, textBytes("12345678"))}),
                   2},
        NetworkRow{{"NoSsid"}, joined({security(2), object(Psk, textBytes("12345678"))}), 2},
        NetworkRow{{"WrongKey"}, home(2, Psk, "12345679"), 3},
        NetworkRow{{"ShorterKey"}, home(2, Psk, "1234567"), 3},
        NetworkRow{{"NoKey"}, joined({ssid("home"), security(2)}), 3},
        NetworkRow{{"NoSecurity"}, home(0, Psk, "12345678"), 3},
        NetworkRow{{"KeyOfAnotherSecurity"}, home(1, Psk, "12345678"), 3},
        NetworkRow{{"UnknownSecurity"}, home(5, Psk, "12345678"), 3},
        NetworkRow{{"SecurityForAnOpenNetwork"}, joined({ssid("a:b"), security(2)}), 3},
        NetworkRow{{"WrongPassword"}, home(3, Password, "1"), 3},
        NetworkRow{
            {"NoCaCertificate"}, joined({home(3, Password, "12345678"), object("2A 17", {1})}), 4}),
    support::rowName);

struct StatusRow : support::Row {
  Bytes objects;
  int status;
};

class StatusInANetwork : public testing::TestWithParam<StatusRow> {};

TEST_P(StatusInANetwork, DependsOnThePassword) {
  Printer printer(InReach);
  EXPECT_EQ(printer.ask(store(GetParam().objects)), SettingsStored);
  EXPECT_EQ(printer.ask(QueryAuthStatus).back(), GetParam().status);
  Personality prescribed = InReach;
  prescribed.authStatus = {7};
  Printer other(prescribed);
  other.ask(store(GetParam().objects));
  EXPECT_EQ(other.ask(QueryAuthStatus).back(), 7);
}

INSTANTIATE_TEST_SUITE_P(
    Settings, StatusInANetwork,
    testing::Values(
        StatusRow{{"RightPassword"}, home(3, Password, "12345678"), 2},
        StatusRow{{"WrongPassword"}, home(3, Password, "1"), 9},
        StatusRow{
            {"OtherSsid"}, joined({ssid("x"), security(3), object(Password, textBytes("1"))}), 3},
        StatusRow{{"No8021x"}, home(2, Psk, "1"), 0},
        StatusRow{{"NoCaCertificate"}, joined({home(3, Password, "1"), object("2A 17", {1})}), 11}),
    support::rowName);

TEST(Networks, ContainTheAdapterFromTheStartIfItHasAnSsid) {
  Personality personality = InReach;
  EXPECT_EQ(Printer(personality).ask(QueryIp), NoAddress);
  EXPECT_EQ(Printer(personality).ask(QueryTrouble).back(), 2);
  personality.ssid = "old";
  Printer printer(personality);
  EXPECT_EQ(printer.ask(QueryIp), packets::IpReply);
  EXPECT_EQ(printer.ask(QueryTrouble).back(), 0);
  // The adapter stays in the network if the stored settings select no network.
  printer.ask(store(object("28 05", {0, 0, 0, 6})));
  EXPECT_EQ(printer.ask(QueryIp), packets::IpReply);
  printer.ask(store(home(2, Psk, "wrong")));
  EXPECT_EQ(printer.ask(QueryIp), NoAddress);
  printer.ask(store(home(2, Psk, "12345678")));
  EXPECT_EQ(printer.ask(QueryIp), packets::IpReply);
}

TEST(Networks, AcceptTheAdapterOnceItHasACaCertificate) {
  Printer printer(InReach);
  printer.ask(store(joined({home(3, Password, "12345678"), object("2A 17", {1})})));
  EXPECT_EQ(printer.ask(QueryTrouble).back(), 4);
  printer.ask(
      support::callPackets(support::uploadCaText("ca.pem", support::Authority("CA").pem())));
  EXPECT_EQ(printer.log.back(), "   in a network");
  EXPECT_EQ(printer.ask(QueryIp), packets::IpReply);
  EXPECT_EQ(printer.ask(QueryAuthStatus).back(), 2);
}

TEST(Networks, AreComparedWithRestoredSettings) {
  Personality personality = InReach;
  personality.ssid = "old";
  Printer printer(personality);
  printer.adapter.restore({{npa::settings::Ssid, textBytes("gone")}}, {});
  EXPECT_EQ(printer.ask(QueryIp), NoAddress);
  EXPECT_EQ(printer.ask(QueryTrouble).back(), 2);
}

TEST(Networks, GiveAnAddressAfterTheTimeSinceTheStore) {
  using std::chrono::seconds;
  Personality personality = InReach;
  personality.addressAcquired = {.afterQueries = 1, .afterTime = seconds(5)};
  Printer printer(personality);
  printer.now += seconds(60);
  printer.ask(QueryIp);
  printer.ask(store(home(2, Psk, "12345678")));
  printer.now += seconds(5);
  EXPECT_EQ(printer.ask(QueryIp), NoAddress);
  EXPECT_EQ(printer.ask(QueryIp), packets::IpReply);
  printer.ask(store(ssid("gone")));
  printer.now += seconds(5);
  printer.ask(QueryIp);
  EXPECT_EQ(printer.ask(QueryIp), NoAddress);
}

TEST(Networks, KeepTheTroubleCodeOfTheOptionsInsideOnly) {
  Personality personality = InReach;
  personality.troubleCode = 7;
  personality.troubleCleared = emulator::Readiness{.afterQueries = 1};
  Printer printer(personality);
  printer.ask(store(home(2, Psk, "12345678")));
  EXPECT_EQ(printer.ask(QueryTrouble).back(), 7);
  EXPECT_EQ(printer.ask(QueryTrouble).back(), 0);
  printer.ask(store(home(2, Psk, "wrong")));
  EXPECT_EQ(printer.ask(QueryTrouble).back(), 3);
  EXPECT_EQ(printer.ask(QueryTrouble).back(), 3);
}

TEST(Networks, AreReportedInTheLogWithoutTheirKeys) {
  Printer printer(InReach);
  printer.ask(store(home(2, Psk, "wrong")));
  EXPECT_EQ(printer.log.back(), "   not in a network: wrong key or security");
  printer.ask(store(home(2, Psk, "12345678")));
  EXPECT_EQ(printer.log.back(), "   in a network");
  printer.ask(store(ssid("gone")));
  EXPECT_EQ(printer.log.back(), "   not in a network: no such SSID");
  for (const std::string& line : printer.log) {
    EXPECT_EQ(line.find("12345678"), std::string::npos) << line;
    EXPECT_EQ(line.find("31 32 33 34"), std::string::npos) << line;
  }
}

}  // namespace
