#include "emulator/radio/radio_configuration.h"

#include <gtest/gtest.h>
#include <string>
#include <string_view>
#include <vector>

#include "testing/bytes.h"
#include "testing/rows.h"

// The configuration of wpa_supplicant for the setting objects of an adapter.

namespace {

using emulator::CertificateStore;
using emulator::RadioConfiguration;
using emulator::RadioPlan;
using emulator::RadioProblem;
using emulator::SettingsStore;
using npa::Bytes;
using support::bytes;
using support::textBytes;

/// A stored setting object: group and object in hex, and its value.
struct Object {
  const char* key;
  Bytes value;
};
using Objects = std::vector<Object>;

Object code(const char* key, std::uint8_t number) {
  return {key, {0, 0, 0, number}};
}

Object flag(const char* key) {
  return {key, {1}};
}

Object text(const char* key, std::string_view value) {
  return {key, textBytes(value)};
}

const Object Ssid = {"28 08", bytes("68 6F 6D 65 00")};
const Object AdHoc = code("28 02", 1);
const Object Wep = code("28 22", 1);
const Object Wpa = code("28 22", 2);
const Object Server = code("28 22", 3);
const Object Psk = text("28 11", "correct horse");
const Object User = {"2A 02", bytes("6D 65 00")};
const Object Password = {"2A 03", bytes("70 77 00")};
const Object Md5 = flag("2A 14");
const Object MsChapV2 = flag("2A 15");
const Object Leap = flag("2A 16");
const Object Peap = flag("2A 17");
const Object Tls = flag("2A 18");
const Object Ttls = flag("2A 19");
const Object Validate = flag("2A 24");

SettingsStore storeOf(const Objects& objects) {
  SettingsStore store;
  for (const Object& object : objects) {
    const Bytes key = bytes(object.key);
    store.set({key.at(0), key.at(1)}, object.value);
  }
  return store;
}

/// A printer with two CA certificates, a signed certificate, and a newer request without one.
CertificateStore fullStore() {
  CertificateStore store;
  store.add(emulator::CaCertificate{.name = "a", .fileName = {}, .pem = "CA-A\n"});
  store.add(emulator::CaCertificate{.name = "b", .fileName = {}, .pem = "CA-B\n"});
  store.add(emulator::DeviceCertificate{
      .name = "old", .keyPem = "KEY\n", .requestPem = {}, .certificatePem = "CERT\n"});
  store.add(emulator::DeviceCertificate{
      .name = "new", .keyPem = "OTHER\n", .requestPem = "R\n", .certificatePem = {}});
  return store;
}

struct PlanRow : support::Row {
  Objects objects;
  std::string_view block;  ///< the lines after those of the SSID
};

class ManagedNetwork : public testing::TestWithParam<PlanRow> {};

TEST_P(ManagedNetwork, HasTheseLines) {
  const RadioPlan plan = planRadio(storeOf(GetParam().objects), fullStore(), "/f");
  const auto* const configuration = std::get_if<RadioConfiguration>(&plan);
  ASSERT_NE(configuration, nullptr) << infoOf(std::get<RadioProblem>(plan)).text;
  EXPECT_EQ(configuration->files.at("wpa_supplicant.conf"),
            "ctrl_interface=/f/control\n"
            "fast_reauth=0\n"
            "network={\n"
            "  ssid=686f6d65\n"
            "  scan_ssid=1\n"
            "  scan_freq=2412 2417 2422 2427 2432 2437 2442 2447 2452 2457 2462\n"
            "  freq_list=2412 2417 2422 2427 2432 2437 2442 2447 2452 2457 2462\n" +
                std::string(GetParam().block) + "}\n");
}

INSTANTIATE_TEST_SUITE_P(
    Rows, ManagedNetwork,
    testing::Values(
        PlanRow{{"OpenWithoutASecurity"}, {Ssid}, "  key_mgmt=NONE\n"},
        PlanRow{{"Open"}, {Ssid, code("28 22", 0)}, "  key_mgmt=NONE\n"},
        PlanRow{{"ChannelIsIgnored"}, {Ssid, code("28 05", 77)}, "  key_mgmt=NONE\n"},
        PlanRow{{"Passphrase"},
                {Ssid, Wpa, Psk},
                "  key_mgmt=WPA-PSK\n  proto=WPA RSN\n  pairwise=CCMP TKIP\n  group=CCMP TKIP\n"
                "  psk=\"correct horse\"\n"},
        PlanRow{{"PassphraseWithAZeroByteAndQuotes"},
                {Ssid, Wpa, text("28 11", std::string("a\"b\"c#\\d") + '\0')},
                "  key_mgmt=WPA-PSK\n  proto=WPA RSN\n  pairwise=CCMP TKIP\n  group=CCMP TKIP\n"
                "  psk=\"a\"b\"c#\\d\"\n"},
        PlanRow{{"Tkip"},
                {Ssid, Wpa, Psk, code("28 26", 3)},
                "  key_mgmt=WPA-PSK\n  proto=WPA RSN\n  pairwise=TKIP\n  group=TKIP\n"
                "  psk=\"correct horse\"\n"},
        PlanRow{{"Aes"},
                {Ssid, Wpa, Psk, code("28 26", 4)},
                "  key_mgmt=WPA-PSK\n  proto=WPA RSN\n  pairwise=CCMP\n  group=CCMP TKIP\n"
                "  psk=\"correct horse\"\n"},
        PlanRow{{"NoEncryptionIsAnyCipher"},
                {Ssid, Wpa, Psk, code("28 26", 0)},
                "  key_mgmt=WPA-PSK\n  proto=WPA RSN\n  pairwise=CCMP TKIP\n  group=CCMP TKIP\n"
                "  psk=\"correct horse\"\n"},
        PlanRow{{"Wpa2Only"},
                {Ssid, code("28 22", 4), Psk},
                "  key_mgmt=WPA-PSK\n  proto=RSN\n  pairwise=CCMP TKIP\n  group=CCMP TKIP\n"
                "  psk=\"correct horse\"\n"},
        PlanRow{{"HexKey"},
                {Ssid, Wpa, text("28 11", support::repeated("0aF9", 16))},
                "  key_mgmt=WPA-PSK\n  proto=WPA RSN\n  pairwise=CCMP TKIP\n  group=CCMP TKIP\n"
                "  psk=0aF90aF90aF90aF90aF90aF90aF90aF90aF90aF90aF90aF90aF90aF90aF90aF9\n"},
        PlanRow{{"WepText"},
                {Ssid, Wep, text("28 09", std::string("abcde") + '\0')},
                "  key_mgmt=NONE\n  auth_alg=OPEN SHARED\n  wep_key0=6162636465\n"
                "  wep_tx_keyidx=0\n"},
        PlanRow{{"WepHexOpen"},
                {Ssid, Wep, text("28 09", "0123456789"), code("28 23", 1)},
                "  key_mgmt=NONE\n  auth_alg=OPEN\n  wep_key0=0123456789\n  wep_tx_keyidx=0\n"},
        PlanRow{{"WepFourKeysShared"},
                {Ssid, Wep, text("28 09", ""), text("28 0B", "abcdefghijklm"),
                 text("28 0D", "12345678901234567890123456"), text("28 0F", "fghij"),
                 code("28 1F", 4), code("28 23", 2)},
                "  key_mgmt=NONE\n  auth_alg=SHARED\n  wep_key1=6162636465666768696a6b6c6d\n"
                "  wep_key2=12345678901234567890123456\n  wep_key3=666768696a\n"
                "  wep_tx_keyidx=3\n"},
        PlanRow{{"PeapAes"},
                {Ssid, Server, code("28 26", 4), Peap, User, Password},
                "  key_mgmt=WPA-EAP\n  proto=WPA RSN\n  pairwise=CCMP\n  group=CCMP TKIP\n"
                "  eap=PEAP\n  identity=6d65\n  password=7077\n  phase2=\"auth=MSCHAPV2\"\n"},
        PlanRow{{"TtlsPap"},
                {Ssid, Server, Ttls, User, Password, code("2A 1A", 3)},
                "  key_mgmt=WPA-EAP\n  proto=WPA RSN\n  pairwise=CCMP TKIP\n  group=CCMP TKIP\n"
                "  eap=TTLS\n  identity=6d65\n  password=7077\n  phase2=\"auth=PAP\"\n"},
        PlanRow{{"PeapIsDroppedForAnInnerMethodThatOnlyTtlsHas"},
                {Ssid, Server, Peap, Ttls, User, Password, code("2A 1A", 0)},
                "  key_mgmt=WPA-EAP\n  proto=WPA RSN\n  pairwise=CCMP TKIP\n  group=CCMP TKIP\n"
                "  eap=TTLS\n  identity=6d65\n  password=7077\n  phase2=\"auth=CHAP\"\n"},
        PlanRow{{"TtlsMsChap"},
                {Ssid, Server, Ttls, User, Password, code("2A 1A", 1)},
                "  key_mgmt=WPA-EAP\n  proto=WPA RSN\n  pairwise=CCMP TKIP\n  group=CCMP TKIP\n"
                "  eap=TTLS\n  identity=6d65\n  password=7077\n  phase2=\"auth=MSCHAP\"\n"},
        PlanRow{{"TlsValidated"},
                {Ssid, Server, code("28 26", 4), Tls, User, Validate},
                "  key_mgmt=WPA-EAP\n  proto=WPA RSN\n  pairwise=CCMP\n  group=CCMP TKIP\n"
                "  eap=TLS\n  identity=6d65\n  client_cert=\"/f/certificate.pem\"\n"
                "  private_key=\"/f/key.pem\"\n  ca_cert=\"/f/authorities.pem\"\n"},
        PlanRow{{"MsChapV2"},
                {Ssid, Server, MsChapV2, User, Password},
                "  key_mgmt=WPA-EAP\n  proto=WPA RSN\n  pairwise=CCMP TKIP\n  group=CCMP TKIP\n"
                "  eap=MSCHAPV2\n  identity=6d65\n  password=7077\n  phase2=\"auth=MSCHAPV2\"\n"},
        PlanRow{{"Md5WithoutEncryption"},
                {Ssid, Server, code("28 26", 0), Md5, User, Password},
                "  key_mgmt=IEEE8021X\n  eapol_flags=0\n"
                "  eap=MD5\n  identity=6d65\n  password=7077\n  phase2=\"auth=MSCHAPV2\"\n"},
        PlanRow{{"DynamicWep"},
                {Ssid, Server, code("28 26", 1), Peap, User, Password},
                "  key_mgmt=IEEE8021X\n  eapol_flags=3\n"
                "  eap=PEAP\n  identity=6d65\n  password=7077\n  phase2=\"auth=MSCHAPV2\"\n"},
        PlanRow{{"StaticWep"},
                {Ssid, Server, code("28 26", 2), text("28 09", "abcde"), Peap, User, Password},
                "  key_mgmt=IEEE8021X\n  eapol_flags=0\n  wep_key0=6162636465\n"
                "  wep_tx_keyidx=0\n"
                "  eap=PEAP\n  identity=6d65\n  password=7077\n  phase2=\"auth=MSCHAPV2\"\n"},
        PlanRow{{"MethodsThatCannotBeUsedAreDropped"},
                {Ssid, Server, Md5, MsChapV2, Leap, Peap, Tls, Ttls, User, Password},
                "  key_mgmt=WPA-EAP\n  proto=WPA RSN\n  pairwise=CCMP TKIP\n  group=CCMP TKIP\n"
                "  eap=TLS PEAP TTLS MSCHAPV2\n  identity=6d65\n  password=7077\n"
                "  phase2=\"auth=MSCHAPV2\"\n  client_cert=\"/f/certificate.pem\"\n"
                "  private_key=\"/f/key.pem\"\n"}),
    support::rowName);

class AdHocNetwork : public testing::TestWithParam<PlanRow> {};

TEST_P(AdHocNetwork, HasTheseLines) {
  const RadioPlan plan = planRadio(storeOf(GetParam().objects), fullStore(), "/f");
  const auto* const configuration = std::get_if<RadioConfiguration>(&plan);
  ASSERT_NE(configuration, nullptr) << infoOf(std::get<RadioProblem>(plan)).text;
  EXPECT_EQ(configuration->files.at("wpa_supplicant.conf"),
            "ctrl_interface=/f/control\nfast_reauth=0\nnetwork={\n  ssid=686f6d65\n  mode=1\n" +
                std::string(GetParam().block) + "}\n");
}

INSTANTIATE_TEST_SUITE_P(
    Rows, AdHocNetwork,
    testing::Values(PlanRow{{"Open"}, {Ssid, AdHoc}, "  frequency=2437\n  key_mgmt=NONE\n"},
                    PlanRow{{"Channel11"},
                            {Ssid, AdHoc, code("28 05", 11)},
                            "  frequency=2462\n  key_mgmt=NONE\n"},
                    PlanRow{{"Passphrase"},
                            {Ssid, AdHoc, Wpa, Psk, code("28 05", 1)},
                            "  frequency=2412\n  key_mgmt=WPA-PSK\n  proto=RSN\n  pairwise=CCMP\n"
                            "  group=CCMP\n  psk=\"correct horse\"\n"}),
    support::rowName);

struct ProblemRow : support::Row {
  Objects objects;
  RadioProblem problem;
};

class UnusableSettings : public testing::TestWithParam<ProblemRow> {};

TEST_P(UnusableSettings, HaveAReason) {
  const RadioPlan plan = planRadio(storeOf(GetParam().objects), {}, "/f");
  ASSERT_TRUE(std::holds_alternative<RadioProblem>(plan));
  EXPECT_EQ(std::get<RadioProblem>(plan), GetParam().problem);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, UnusableSettings,
    testing::Values(
        ProblemRow{{"NoSsid"}, {Wpa, Psk}, RadioProblem::SsidMissing},
        ProblemRow{
            {"LongSsid"}, {text("28 08", support::repeated("x", 33))}, RadioProblem::SsidTooLong},
        ProblemRow{{"Security5"}, {Ssid, code("28 22", 5)}, RadioProblem::SecurityUnknown},
        ProblemRow{
            {"Encryption5"}, {Ssid, Wpa, Psk, code("28 26", 5)}, RadioProblem::EncryptionUnknown},
        ProblemRow{{"WepEncryptionOfAnEarlierNetwork"},
                   {Ssid, Wpa, Psk, code("28 26", 1)},
                   RadioProblem::WepEncryptionWithKey},
        ProblemRow{{"StaticWepEncryptionOfAnEarlierNetwork"},
                   {Ssid, Wpa, Psk, code("28 26", 2)},
                   RadioProblem::WepEncryptionWithKey},
        ProblemRow{{"NoPassphrase"}, {Ssid, Wpa}, RadioProblem::PassphraseTooShort},
        ProblemRow{{"Passphrase7"},
                   {Ssid, Wpa, text("28 11", "1234567")},
                   RadioProblem::PassphraseTooShort},
        ProblemRow{{"Key65"},
                   {Ssid, Wpa, text("28 11", support::repeated("1", 65))},
                   RadioProblem::PassphraseTooLong},
        ProblemRow{{"Key64NotHex"},
                   {Ssid, Wpa, text("28 11", support::repeated("x", 64))},
                   RadioProblem::KeyNotHex},
        ProblemRow{{"PassphraseWithALineEnd"},
                   {Ssid, Wpa, text("28 11", "12345678\n}")},
                   RadioProblem::PassphraseControlCharacter},
        ProblemRow{{"PassphraseWithDelete"},
                   {Ssid, Wpa, text("28 11", "12345678\x7F")},
                   RadioProblem::PassphraseControlCharacter},
        ProblemRow{{"WepKey6"}, {Ssid, Wep, text("28 09", "abcdef")}, RadioProblem::WepKeySize},
        ProblemRow{
            {"WepKey16"}, {Ssid, Wep, text("28 09", "abcdefghijklmnop")}, RadioProblem::WepKeySize},
        ProblemRow{{"WepKey10NotHex"},
                   {Ssid, Wep, text("28 09", "abcdefghij")},
                   RadioProblem::WepKeyNotHex},
        ProblemRow{{"WepAuth3"},
                   {Ssid, Wep, text("28 09", "abcde"), code("28 23", 3)},
                   RadioProblem::WepAuthUnknown},
        ProblemRow{{"TransmitKey0"},
                   {Ssid, Wep, text("28 09", "abcde"), code("28 1F", 0)},
                   RadioProblem::TransmitKeyOutOfRange},
        ProblemRow{{"TransmitKey5"},
                   {Ssid, Wep, text("28 09", "abcde"), code("28 1F", 5)},
                   RadioProblem::TransmitKeyOutOfRange},
        ProblemRow{{"TransmitKeyOfAnEarlierNetwork"},
                   {Ssid, Wep, text("28 09", "abcde"), code("28 1F", 2)},
                   RadioProblem::TransmitKeyEmpty},
        ProblemRow{{"NoWepKey"}, {Ssid, Wep}, RadioProblem::TransmitKeyEmpty},
        ProblemRow{
            {"AdHocChannel0"}, {Ssid, AdHoc, code("28 05", 0)}, RadioProblem::ChannelOutOfRange},
        ProblemRow{
            {"AdHocChannel12"}, {Ssid, AdHoc, code("28 05", 12)}, RadioProblem::ChannelOutOfRange},
        ProblemRow{{"AdHocWithServer"}, {Ssid, AdHoc, Server}, RadioProblem::AdHocWithServer},
        ProblemRow{{"AdHocWithTkip"},
                   {Ssid, AdHoc, Wpa, Psk, code("28 26", 3)},
                   RadioProblem::AdHocWithTkip},
        ProblemRow{{"NoMethod"}, {Ssid, Server, User, Password}, RadioProblem::MethodMissing},
        ProblemRow{
            {"OnlyLeap"}, {Ssid, Server, Leap, User, Password}, RadioProblem::LeapUnsupported},
        ProblemRow{
            {"OnlyMd5"}, {Ssid, Server, Md5, User, Password}, RadioProblem::MethodMakesNoKeys},
        ProblemRow{{"InnerMethod4"},
                   {Ssid, Server, Peap, User, Password, code("2A 1A", 4)},
                   RadioProblem::InnerMethodUnknown},
        ProblemRow{{"PeapWithChap"},
                   {Ssid, Server, Peap, User, Password, code("2A 1A", 0)},
                   RadioProblem::InnerMethodUnfitForPeap},
        ProblemRow{{"NoUser"}, {Ssid, Server, Peap, Password}, RadioProblem::UserMissing},
        ProblemRow{{"NoPassword"}, {Ssid, Server, Peap, User}, RadioProblem::PasswordMissing},
        ProblemRow{
            {"NoCertificate"}, {Ssid, Server, Tls, User}, RadioProblem::ClientCertificateMissing},
        ProblemRow{{"NoAuthority"},
                   {Ssid, Server, Peap, User, Password, Validate},
                   RadioProblem::AuthorityMissing}),
    support::rowName);

TEST(RadioPlan, PutsCertificatesAndKeyIntoFiles) {
  const RadioPlan plan = planRadio(storeOf({Ssid, Server, Tls, User, Validate}), fullStore(), "/f");
  const auto& files = std::get<RadioConfiguration>(plan).files;
  EXPECT_EQ(files.size(), 4U);
  EXPECT_EQ(files.at("authorities.pem"), "CA-A\nCA-B\n");
  EXPECT_EQ(files.at("certificate.pem"), "CERT\n");
  EXPECT_EQ(files.at("key.pem"), "KEY\n");
}

TEST(RadioPlan, HasNoAuthoritiesUnlessTheFlagIsSet) {
  const RadioPlan plan =
      planRadio(storeOf({Ssid, Server, Peap, User, Password}), fullStore(), "/f");
  EXPECT_EQ(std::get<RadioConfiguration>(plan).files.size(), 1U);
}

TEST(RadioPlan, ReportsAMissingAuthorityWithItsOwnTroubleCode) {
  EXPECT_EQ(static_cast<int>(infoOf(RadioProblem::AuthorityMissing).membership), 4);
  EXPECT_EQ(static_cast<int>(infoOf(RadioProblem::WepKeySize).membership), 7);
}

}  // namespace
