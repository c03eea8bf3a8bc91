#include "settings/config_details.h"

#include <algorithm>
#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "testing/rows.h"
#include "testing/settings.h"

using support::settings;
using Arguments = std::vector<std::string>;

namespace {

struct SettingRow : support::Row {
  const char* key;  ///< nullptr if no option sets this setting
  std::string initial;
  std::function<std::string(const configDetails&)> get;
};

const SettingRow Rows[] = {
    {{"Usb"}, nullptr, "/dev/usb/lp0", &configDetails::getUSB},
    {{"Ssid"}, "--ssid=", "", &configDetails::getSSID},
    {{"Channel"}, "--channel=", "6", &configDetails::getChannel},
    {{"Mode"}, "--mode=", "Managed", &configDetails::getMode},
    {{"Security"}, "--security=", "None", &configDetails::getSecurity},
    {{"Passwd"}, "--passwd=", "", &configDetails::getPasswd},
    {{"NpaFileData"}, nullptr, "", &configDetails::getNPAFileData},
    {{"Encryption"}, "--encryption=", "", &configDetails::get802Encryption},
    {{"AuthExt"}, "--802-auth-ext=", "", &configDetails::get802AuthExt},
    {{"AuthInner"}, "--802-auth-inner=", "", &configDetails::get802AuthInner},
    {{"Username"}, "--802-user=", "", &configDetails::get802Username},
    {{"Password"}, "--802-pwd=", "", &configDetails::get802Password},
    {{"CaCertFile"}, "--802-CA-cer-file=", "", &configDetails::get802CACertFile},
    {{"SignedCertFile"}, "--802-signed-cer-file=", "", &configDetails::get802SignedCertFile},
    {{"WepKey1"},
     "--WEP-key1=",
     "",
     [](const auto& details) {
       return details.getWEPKey(0);
     }},
    {{"WepKey2"},
     "--WEP-key2=",
     "",
     [](const auto& details) {
       return details.getWEPKey(1);
     }},
    {{"WepKey3"},
     "--WEP-key3=",
     "",
     [](const auto& details) {
       return details.getWEPKey(2);
     }},
    {{"WepKey4"},
     "--WEP-key4=",
     "",
     [](const auto& details) {
       return details.getWEPKey(3);
     }},
    {{"WepTransmit"}, "--WEP-transmit=", "", &configDetails::getWEPTransmit},
    {{"Psk"}, "--psk=", "", &configDetails::getPSK},
    {{"CerCommonName"}, "--cer-common=", "", &configDetails::getCerCommonName},
    {{"CerOrg"}, "--cer-org=", "", &configDetails::getCerOrg},
    {{"CerUnit"}, "--cer-unit=", "", &configDetails::getCerUnit},
    {{"CerState"}, "--cer-state=", "", &configDetails::getCerState},
    {{"CerCountry"}, "--cer-country=", "", &configDetails::getCerCountry},
    {{"CerCity"}, "--cer-city=", "", &configDetails::getCerCity},
    {{"CerAltName"}, "--cer-altname=", "", &configDetails::getCerAltName},
    {{"CerFriendlyName"}, "--cer-friendly-name=", "", &configDetails::getCerFriendlyName},
    {{"CerFilePath"}, "--cer-path=", "", &configDetails::getCerFilePath},
};

class OneSetting : public testing::TestWithParam<SettingRow> {
 protected:
  /// Expects that the row's setting has `value`, and that every other setting has its initial
  /// value.
  static void expectOnly(const configDetails& details, const std::string& value) {
    for (const SettingRow& row : Rows) {
      const bool own = std::string(row.name) == GetParam().name;
      EXPECT_EQ(row.get(details), own ? value : row.initial) << row.name;
    }
  }

  static std::string option(const std::string& value) {
    return (GetParam().key == nullptr ? "" : GetParam().key) + value;
  }
};

}  // namespace

TEST_P(OneSetting, HasItsInitialValueInANewObject) {
  expectOnly(configDetails(), GetParam().initial);
}

TEST_P(OneSetting, IsSetOnlyByItsOption) {
  if (GetParam().key == nullptr) {
    expectOnly(settings({"--usb=new", "--npa=new"}), GetParam().initial);
  } else {
    expectOnly(settings({option("new")}), "new");
  }
}

TEST_P(OneSetting, IsEmptiedOnlyByItsKey) {
  if (GetParam().key == nullptr) {
    expectOnly(settings({"--usb=", "--npa="}), GetParam().initial);
  } else {
    expectOnly(settings({option("")}), "");
  }
}

TEST_P(OneSetting, HasItsLastValue) {
  if (GetParam().key != nullptr) {
    expectOnly(settings({option("first"), option("last")}), "last");
  } else {
    EXPECT_EQ(GetParam().get(settings({"-x", "-y"})), GetParam().initial);
  }
}

INSTANTIATE_TEST_SUITE_P(All, OneSetting, testing::ValuesIn(Rows), support::rowName);

TEST(Value, IsFoundByTheSetting) {
  const configDetails details = settings({"--ssid=Home", "--WEP-key4=abc", "lp1"});
  EXPECT_EQ(details.value(Setting::Ssid), "Home");
  EXPECT_EQ(details.value(Setting::WepKey4), "abc");
  EXPECT_EQ(details.value(Setting::Usb), "lp1");
  EXPECT_EQ(details.value(Setting::Channel), "6");
}

TEST(SettingOptions, AreTriedInTheOrderOfTheSettings) {
  auto next = SettingOptions.begin();
  for (const SettingRow& row : Rows) {
    if (row.key != nullptr) {
      next = std::find_if(next, SettingOptions.end(),
                          [&](const SettingOption& option) { return option.key == row.key; });
      EXPECT_NE(next, SettingOptions.end()) << row.key;
    }
  }
}

// --- The value of an option ---------------------------------------------------------------------

namespace {

struct ValueRow : support::Row {
  std::string text;
  std::string value;  ///< the result for the key "--ssid="; "old" if unchanged
};

class OptionValue : public testing::TestWithParam<ValueRow> {};

}  // namespace

TEST_P(OptionValue, IsExtracted) {
  configDetails details;
  std::string value = "old";
  EXPECT_EQ(details.getParmValue(GetParam().text, "--ssid=", &value), 0);
  EXPECT_EQ(value, GetParam().value);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, OptionValue,
    testing::Values(ValueRow{{"AfterTheKey"}, "--ssid=Home", "Home"},
                    ValueRow{{"Empty"}, "--ssid=", ""}, ValueRow{{"OtherKey"}, "--psk=Home", "old"},
                    ValueRow{{"EmptyText"}, "", "old"},
                    ValueRow{{"KeyWithoutEquals"}, "--ssid", "old"},
                    ValueRow{{"OtherCase"}, "--SSID=Home", "old"},
                    ValueRow{{"BlanksAreKept"}, "--ssid= a b ", " a b "},
                    ValueRow{{"EqualsSignInIt"}, "--ssid=a=b", "a=b"},
                    ValueRow{{"KeyTwice"}, "--ssid=--ssid=a", "--ssid=a"},
                    ValueRow{{"KeyNotAtTheStart"}, "x--ssid=Home", "=Home"},
                    ValueRow{{"KeyFarFromTheStart"}, "--psk=a--ssid=Home", "--ssid=Home"},
                    ValueRow{{"InQuotationMarks"}, "--ssid=\"My Net\"", "My Net"},
                    ValueRow{{"NothingInQuotationMarks"}, "--ssid=\"\"", ""},
                    ValueRow{{"TextAroundQuotationMarks"}, "--ssid=a\"b\"c", "b"},
                    ValueRow{{"OneQuotationMark"}, "--ssid=a\"b", "b"},
                    ValueRow{{"OneQuotationMarkAtTheEnd"}, "--ssid=ab\"", ""},
                    ValueRow{{"ThreeQuotationMarks"}, "--ssid=\"a\"b\"", "a"},
                    ValueRow{{"QuotationMarksBeforeTheKey"}, "\"a\"--ssid=b", "a"},
                    ValueRow{{"QuotationMarkBeforeAndAfterTheKey"}, "\"--ssid=b\"c", "--ssid=b"}),
    support::rowName);

TEST(OptionValue, IsTheWholeTextForAnEmptyKey) {
  configDetails details;
  std::string value = "old";
  details.getParmValue("text", "", &value);
  EXPECT_EQ(value, "text");
}

// --- The command line ---------------------------------------------------------------------------

TEST(ParseParm, AcceptsOptionsAndDeviceInAnyOrder) {
  const configDetails details =
      settings({"-c", "--psk=k", "/dev/usb/lp3", "--ssid=Home", "--channel=11"});
  EXPECT_EQ(details.getPSK(), "k");
  EXPECT_EQ(details.getUSB(), "/dev/usb/lp3");
  EXPECT_EQ(details.getSSID(), "Home");
  EXPECT_EQ(details.getChannel(), "11");
  EXPECT_EQ(details.getMode(), "Managed");
}

TEST(ParseParm, UsesTheLastArgumentWithoutAMinusAsTheDevice) {
  EXPECT_EQ(settings({"lp0", "/dev/usb/lp1"}).getUSB(), "/dev/usb/lp1");
  EXPECT_EQ(settings({"/dev/usb/lp1", ""}).getUSB(), "");
  EXPECT_EQ(settings({"/dev/usb/lp1", "usb-printer"}).getUSB(), "/dev/usb/lp1");
  EXPECT_EQ(settings({"ssid=Home"}).getUSB(), "ssid=Home");
}

TEST(ParseParm, SetsEverySettingWhoseKeyAnArgumentContains) {
  // The parser finds a key anywhere in the argument, but always removes the first n characters,
  // where n is the length of the key. The rest is the value.
  const configDetails details = settings({"--ssid=a--psk=b"});
  EXPECT_EQ(details.getSSID(), "a--psk=b");
  EXPECT_EQ(details.getPSK(), "=a--psk=b");
}

TEST(ParseParm, ReadsArguments1ToCountMinus1) {
  configDetails details;
  const Arguments arguments = {"--ssid=program", "--psk=k", "--ssid=beyond", "lp9"};
  EXPECT_EQ(details.parseParm(2, arguments), 0);
  EXPECT_EQ(details.getSSID(), "");
  EXPECT_EQ(details.getPSK(), "k");
  EXPECT_EQ(details.getUSB(), "/dev/usb/lp0");
}

TEST(ParseParm, IgnoresUnknownArguments) {
  const configDetails details = settings({"-c", "-file", "--sid=x", "--ssid", "-", "--"});
  EXPECT_EQ(details.getSSID(), "");
  EXPECT_EQ(details.getUSB(), "/dev/usb/lp0");
}

TEST(ParseParm, DoesNotCheckValues) {
  const configDetails details = settings({"--channel=99", "--mode=none", "--security=?"});
  EXPECT_EQ(details.getChannel(), "99");
  EXPECT_EQ(details.getMode(), "none");
  EXPECT_EQ(details.getSecurity(), "?");
}

TEST(ParseParm, AcceptsAnInvalidCount) {
  for (const int count : {-1, 0, 1, 99}) {
    configDetails details;
    EXPECT_EQ(details.parseParm(count, {"program", "lp9"}), 0);
    EXPECT_EQ(details.getUSB(), count == 99 ? "lp9" : "/dev/usb/lp0");
    EXPECT_EQ(details.parseParm(count, {}), 0);
    EXPECT_EQ(details.parseUSB(count, {}), 0);
  }
}

TEST(ParseUsb, ReadsOnlyTheDevice) {
  configDetails details;
  EXPECT_EQ(details.parseUSB(5, {"lp7", "-ip", "--ssid=x", "lp1", "/dev/usb/lp2"}), 0);
  EXPECT_EQ(details.getUSB(), "/dev/usb/lp2");
  EXPECT_EQ(details.getSSID(), "");
}

TEST(ParseUsb, ReadsArguments1ToCountMinus1) {
  configDetails details;
  details.parseUSB(2, {"lp7", "-ip", "lp1"});
  EXPECT_EQ(details.getUSB(), "/dev/usb/lp0");
}

TEST(ParseUsb, PassesAPathWithAMinus) {
  configDetails details;
  details.parseUSB(3, {"program", "-ip", "/dev/usb-printer/lp1"});
  EXPECT_EQ(details.getUSB(), "/dev/usb/lp0");
}
