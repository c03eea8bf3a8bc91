#include <gtest/gtest.h>
#include <string>
#include <utility>
#include <vector>

#include "testing/encoder.h"

using support::EncoderRow;

namespace {

class SecurityEncoder : public support::Encoder {};

constexpr auto Security = &wnpaGenerator::constructSecurity;
constexpr auto Passwd = &wnpaGenerator::constructPasswd;

}  // namespace

TEST_P(SecurityEncoder, ReturnsTheCountOfItsBytesAndLeavesTheTotalAlone) {
  expectCountAndLog();
}

TEST_P(SecurityEncoder, AppendsItsObject) {
  expectObject();
}

namespace {

EncoderRow securityRow(const char* name, std::vector<std::string> options, const char* object,
                       const char* log) {
  options.emplace_back("--passwd=p");  // so that none asks for it
  return {{name}, Security, std::move(options), object, log};
}

constexpr const char* Code0 = "28 22 00 00 04 00 00 00 00";
constexpr const char* Code1 = "28 22 00 00 04 00 00 00 01";
constexpr const char* Code2 = "28 22 00 00 04 00 00 00 02";
constexpr const char* Code3 = "28 22 00 00 04 00 00 00 03";

}  // namespace

INSTANTIATE_TEST_SUITE_P(
    Security, SecurityEncoder,
    testing::Values(
        securityRow("None", {}, Code0,
                    "D [ZVK] Security = 'None'\nD [ZVK] Security mode: 0 (No Security)\n"),
        securityRow("Empty", {"--security="}, Code0,
                    "D [ZVK] Security = ''\nD [ZVK] Security mode: 0 (No Security)\n"),
        securityRow("Open", {"--security=OPEN"}, Code0,
                    "D [ZVK] Security = 'OPEN'\nD [ZVK] Security mode: 0 (No Security)\n"),
        securityRow("OpenWithWep", {"--security=OPEN", "--encryption=WEP"}, Code1,
                    "D [ZVK] Security = 'OPEN'\nD [ZVK] Security mode: 1 (WEP)\n"),
        securityRow("OpenWithStaticWep", {"--security=OPEN", "--encryption=WEP-STATIC"}, Code0,
                    "D [ZVK] Security = 'OPEN'\nD [ZVK] Security mode: 0 (No Security)\n"),
        securityRow("NoneWithWep", {"--encryption=WEP"}, Code0,
                    "D [ZVK] Security = 'None'\nD [ZVK] Security mode: 0 (No Security)\n"),
        securityRow("Wep", {"--security=WEP"}, Code1,
                    "D [ZVK] Security = 'WEP'\nD [ZVK] Security mode: 1 (WEP)\n"),
        securityRow("Shared", {"--security=SHARED"}, Code1,
                    "D [ZVK] Security = 'SHARED'\nD [ZVK] Security mode: 1 (WEP)\n"),
        securityRow("Wpa", {"--security=WPA"}, Code2,
                    "D [ZVK] Security = 'WPA'\n"
                    "D [ZVK] Security mode: 2 (WPA PSK (Auto 1 or 2))\n"),
        securityRow("WpaPersonal", {"--security=WPA-PER"}, Code2,
                    "D [ZVK] Security = 'WPA-PER'\n"
                    "D [ZVK] Security mode: 2 (WPA PSK (Auto 1 or 2))\n"),
        securityRow("Wpa2", {"--security=WPA2"}, Code2,
                    "D [ZVK] Security = 'WPA2'\n"
                    "D [ZVK] Security mode: 2 (WPA PSK (Auto 1 or 2))\n"),
        securityRow("WpaEnterprise", {"--security=WPA-ENT"}, Code2,
                    "D [ZVK] Security = 'WPA-ENT'\n"
                    "D [ZVK] Security mode: 2 (WPA PSK (Auto 1 or 2))\n"),
        securityRow("Ieee8021x", {"--security=802.1x"}, Code3,
                    "D [ZVK] Security = '802.1x'\nD [ZVK] Security mode: 3 (802.1x)\n"),
        securityRow("OtherCase", {"--security=wpa"}, Code0,
                    "D [ZVK] Security = 'wpa'\nD [ZVK] Security mode: 0 (No Security)\n"),
        securityRow("OtherText", {"--security=WPA3"}, Code0,
                    "D [ZVK] Security = 'WPA3'\nD [ZVK] Security mode: 0 (No Security)\n")),
    support::rowName);

INSTANTIATE_TEST_SUITE_P(
    Passwd, SecurityEncoder,
    testing::Values(EncoderRow{{"SecurityNone"}, Passwd, {"--passwd=secret"}, "", ""},
                    EncoderRow{{"SecurityNoneWithoutPassword"}, Passwd, {}, "", ""},
                    EncoderRow{{"WepKeySlot"},
                               Passwd,
                               {"--security=WEP", "--passwd=abc"},
                               "28 09 00 00 04 61 62 63 00",
                               ""},
                    EncoderRow{{"PskSlot"},
                               Passwd,
                               {"--security=WPA", "--passwd=abc"},
                               "28 11 00 00 04 61 62 63 00",
                               ""},
                    EncoderRow{{"PskSlotOfOpen"},
                               Passwd,
                               {"--security=OPEN", "--encryption=WEP", "--passwd=abc"},
                               "28 11 00 00 04 61 62 63 00",
                               ""},
                    EncoderRow{{"PskSlotOfShared"},
                               Passwd,
                               {"--security=SHARED", "--passwd=abc"},
                               "28 11 00 00 04 61 62 63 00",
                               ""},
                    EncoderRow{{"EmptySecurityIsNotNone"},
                               Passwd,
                               {"--security=", "--passwd=abc"},
                               "28 11 00 00 04 61 62 63 00",
                               ""},
                    EncoderRow{{"OtherCaseIsNotNone"},
                               Passwd,
                               {"--security=none", "--passwd=abc"},
                               "28 11 00 00 04 61 62 63 00",
                               ""}),
    support::rowName);
