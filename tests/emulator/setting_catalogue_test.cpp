#include "emulator/setting_catalogue.h"

#include <gtest/gtest.h>

#include "emulator/settings_store.h"
#include "support/bytes.h"
#include "support/rows.h"

namespace {

using emulator::SettingKey;
using support::bytes;

struct WordsRow : support::Row {
  SettingKey key;
  const char* value;
  const char* masked;
  const char* shown;
};

class DescribeSetting : public testing::TestWithParam<WordsRow> {};

TEST_P(DescribeSetting, PutsTheValueIntoWords) {
  const auto value = bytes(GetParam().value);
  EXPECT_EQ(describeSetting(GetParam().key, value, false), GetParam().masked);
  EXPECT_EQ(describeSetting(GetParam().key, value, true), GetParam().shown);
}

INSTANTIATE_TEST_SUITE_P(
    Settings, DescribeSetting,
    testing::Values(
        WordsRow{{"Text"}, {0x28, 0x08}, "68 69 00", "SSID = \"hi\"", "SSID = \"hi\""},
        WordsRow{{"OddText"},
                 {0x28, 0x08},
                 "68 0A FF",
                 "SSID = \"h\\x0A\\xFF\"",
                 "SSID = \"h\\x0A\\xFF\""},
        WordsRow{{"EmptyText"}, {0x28, 0x08}, "", "SSID = \"\"", "SSID = \"\""},
        WordsRow{{"NamedNumber"},
                 {0x28, 0x22},
                 "00 00 00 02",
                 "security = 2 (WPA (1 or 2))",
                 "security = 2 (WPA (1 or 2))"},
        WordsRow{
            {"NumberWithoutName"}, {0x28, 0x22}, "00 00 01 02", "security = 258", "security = 258"},
        WordsRow{{"NumberOfNoBytes"}, {0x28, 0x05}, "", "channel = ", "channel = "},
        WordsRow{{"NumberOfTooManyBytes"},
                 {0x28, 0x05},
                 "01 02 03 04 05",
                 "channel = 01 02 03 04 05",
                 "channel = 01 02 03 04 05"},
        WordsRow{{"Address"},
                 {0x0A, 0x02},
                 "0A 00 00 07",
                 "IP address = 10.0.0.7",
                 "IP address = 10.0.0.7"},
        WordsRow{{"Key"}, {0x28, 0x09}, "61 62 00", "WEP key 1 = (3 bytes)", "WEP key 1 = \"ab\""},
        WordsRow{{"Unknown"},
                 {0x28, 0xFE},
                 "61 62",
                 "object 28 FE = (2 bytes)",
                 "object 28 FE = 61 62"}),
    support::rowName);

TEST(SettingsStore, KeepsTheLastValueOfEachSetting) {
  emulator::SettingsStore store;
  const SettingKey ssid = {0x28, 0x08};
  EXPECT_FALSE(store.holds(ssid));
  EXPECT_TRUE(store.get(ssid).empty());
  store.set(ssid, bytes("61 62 63"));
  store.set(ssid, bytes("64"));
  store.set({0x28, 0x11}, bytes("6B"));
  EXPECT_EQ(store.get(ssid), bytes("64"));
  EXPECT_EQ(store.describe(false),
            (std::vector<std::string>{"SSID = \"d\"", "pre-shared key = (1 bytes)"}));
  EXPECT_EQ(store.describe(true),
            (std::vector<std::string>{"SSID = \"d\"", "pre-shared key = \"k\""}));
}

}  // namespace
