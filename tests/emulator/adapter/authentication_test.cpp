#include "emulator/adapter/authentication.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "testing/emulated_printer.h"
#include "testing/packets.h"
#include "testing/rows.h"

namespace {

using emulator::CaCertificate;
using emulator::CertificateStore;
using emulator::SettingsStore;
using npa::SettingKey;
using support::Bytes;
using support::bytes;
using support::joined;
namespace settings = npa::settings;

struct StatusRow : support::Row {
  std::vector<std::pair<SettingKey, const char*>> stored;
  bool hasCa;
  int status;
};

class AuthenticationStatus : public testing::TestWithParam<StatusRow> {};

TEST_P(AuthenticationStatus, DependsOnSettingsAndCertificates) {
  SettingsStore store;
  for (const auto& [key, value] : GetParam().stored) {
    store.set(key, bytes(value));
  }
  CertificateStore certificates;
  if (GetParam().hasCa) {
    certificates.add(CaCertificate{0, "RootCA", "ca.pem", "PEM"});
  }
  const emulator::Authentication authentication(store, certificates);
  EXPECT_EQ(authentication.value(settings::AuthStatus), GetParam().status);
  EXPECT_EQ(authentication.value(settings::AuthEnabled), GetParam().status == 0 ? 0 : 1);
  EXPECT_EQ(authentication.value(settings::CaInstalled), GetParam().hasCa ? 1 : 0);
}

constexpr const char* On8021x = "00 00 00 03";

const std::vector<StatusRow> Rows = {
    {{"NothingStored"}, {}, false, 0},
    {{"OtherSecurity"},
     {{settings::Security, "00 00 00 02"}, {settings::MethodPeap, "01"}},
     true,
     0},
    {{"EmptySecurity"}, {{settings::Security, ""}}, false, 0},
    {{"NoMethodThatVerifiesTheServer"},
     {{settings::Security, On8021x}, {settings::MethodMd5, "01"}, {settings::MethodPeap, "00"}},
     false,
     2},
    {{"PeapWithoutCa"}, {{settings::Security, On8021x}, {settings::MethodPeap, "01"}}, false, 11},
    {{"TlsWithoutCa"}, {{settings::Security, On8021x}, {settings::MethodTls, "01"}}, false, 11},
    {{"TtlsWithoutCa"}, {{settings::Security, On8021x}, {settings::MethodTtls, "01"}}, false, 11},
    {{"ValidationWithoutCa"},
     {{settings::Security, On8021x}, {settings::ValidateCert, "01"}},
     false,
     11},
    {{"PeapWithCa"}, {{settings::Security, On8021x}, {settings::MethodPeap, "01"}}, true, 2},
};

INSTANTIATE_TEST_SUITE_P(Settings, AuthenticationStatus, testing::ValuesIn(Rows), support::rowName);

TEST(Authentication, HasNoValueForOtherSettings) {
  const SettingsStore store;
  const CertificateStore certificates;
  EXPECT_EQ(emulator::Authentication(store, certificates).value(settings::Security), std::nullopt);
}

/// Returns a wrapped record with this authentication status.
Bytes statusRecord(int status) {
  return packets::wrapped(
      joined({bytes("A5 00 09 50 E0 D8 00 2A 1D 00 01"), {static_cast<std::uint8_t>(status)}}));
}

/// The request that stores the security "802.1x".
const Bytes StoreSecurity = bytes("A5 00 0D 50 E0 DA 01 28 22 00 00 04 00 00 00 03");

TEST(Authentication, IsReturnedByTheAdapter) {
  support::EmulatedPrinter printer;
  EXPECT_EQ(printer.ask(packets::QueryAuthStatus), statusRecord(0));
  printer.ask(StoreSecurity);
  EXPECT_EQ(printer.ask(packets::QueryAuthStatus), statusRecord(2));
  printer.ask(bytes("A5 00 0A 50 E0 DA 01 2A 17 00 00 01 01"));
  EXPECT_EQ(printer.ask(packets::QueryAuthStatus), statusRecord(11));
}

TEST(Authentication, IsSetByAnOptionRegardlessOfTheSettings) {
  support::EmulatedPrinter printer({.authStatus = {7}});
  printer.ask(StoreSecurity);
  EXPECT_EQ(printer.ask(packets::QueryAuthStatus), statusRecord(7));
}

}  // namespace
