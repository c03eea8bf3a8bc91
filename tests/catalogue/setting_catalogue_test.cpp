#include "catalogue/setting_catalogue.h"

#include <algorithm>
#include <cstddef>
#include <fstream>
#include <gtest/gtest.h>
#include <regex>
#include <string>
#include <vector>

#include "testing/packets.h"
#include "testing/rows.h"

namespace {

using npa::SettingKey;
using support::bytes;

struct WordsRow : support::Row {
  SettingKey key;
  const char* value;
  std::string words;
  std::string shown;  ///< the words if secrets are shown
};

WordsRow plainRow(const char* name, SettingKey key, const char* value, const std::string& words) {
  return {{name}, key, value, words, words};
}

class DescribeSetting : public testing::TestWithParam<WordsRow> {};

TEST_P(DescribeSetting, ReturnsNameAndValueInWords) {
  const auto value = bytes(GetParam().value);
  EXPECT_EQ(catalogue::describeSetting(GetParam().key, value, false), GetParam().words);
  EXPECT_EQ(catalogue::describeSetting(GetParam().key, value, true), GetParam().shown);
}

INSTANTIATE_TEST_SUITE_P(
    Settings, DescribeSetting,
    testing::Values(
        plainRow("Text", {0x28, 0x08}, "68 69 00", "SSID = \"hi\""),
        plainRow("OddText", {0x28, 0x08}, "68 0A FF", "SSID = \"h\\x0A\\xFF\""),
        plainRow("EmptyText", {0x28, 0x08}, "", "SSID = \"\""),
        plainRow("NamedNumber", {0x28, 0x22}, "00 00 00 02", "security = 2 (WPA (1 or 2))"),
        plainRow("NumberWithoutName", {0x28, 0x22}, "00 00 01 02", "security = 258"),
        plainRow("FirstWithoutName", {0x28, 0x23}, "00 00 00 03", "WEP authentication = 3"),
        plainRow("NumberOfNoBytes", {0x28, 0x05}, "", "channel = "),
        plainRow("NumberOfTooManyBytes", {0x28, 0x05}, "01 02 03 04 05",
                 "channel = 01 02 03 04 05"),
        plainRow("AuthStatus", {0x2A, 0x1D}, "02",
                 "802.1x authentication status = 2 (Authenticated)"),
        plainRow("Flag", {0x06, 0x14}, "01", "adapter reset = 1"),
        plainRow("Address", {0x0A, 0x02}, "0A 00 00 07", "IP address = 10.0.0.7"),
        WordsRow{{"Key"}, {0x28, 0x09}, "61 62 00", "WEP key 1 = (3 bytes)", "WEP key 1 = \"ab\""},
        WordsRow{{"Unknown"},
                 {0x28, 0xFE},
                 "61 62",
                 "object 28 FE = (2 bytes)",
                 "object 28 FE = 61 62"}),
    support::rowName);

// --- All settings -------------------------------------------------------------------------------

/// Returns the rows of settings in docs/protocol.md, in the order of the numbers: number, name and
/// value up to the first semicolon.
std::vector<std::string> documentedSettings() {
  static const std::regex row("\\| ([0-9A-F]{2} [0-9A-F]{2} \\| [^|]+ \\| [^|;]+)(;[^|]*)? \\|");
  std::ifstream document(PROTOCOL_DOCUMENT);
  std::vector<std::string> rows;
  for (std::string line; std::getline(document, line);) {
    std::smatch match;
    if (std::regex_match(line, match, row)) {
      rows.push_back(match[1]);
    }
  }
  std::ranges::sort(rows);
  return rows;
}

/// Returns the row that the document must have for a setting.
std::string rowOf(const catalogue::SettingInfo& info) {
  std::string row = packets::hexText({info.key.group, info.key.object});
  row.append(" | ").append(info.name).append(" | ").append(info.secret ? "secret " : "");
  row.append(catalogue::kindName(info.kind)).append(info.sizeIsLowByte ? ", low byte" : "");
  if (info.numberNames.size() > 5) {  // other tests compare the status texts
    return row + ", " + std::to_string(info.numberNames.size()) + " meanings";
  }
  for (std::size_t i = 0; i < info.numberNames.size(); ++i) {
    row.append(i == 0 ? ": " : ", ").append(std::to_string(i)).append(" ");
    row.append(info.numberNames[i]);
  }
  return row;
}

TEST(SettingCatalogue, HasEverySettingOfTheDocumentInTheOrderOfTheNumbers) {
  std::vector<std::string> rows;
  for (const catalogue::SettingInfo& info : catalogue::settingCatalogue()) {
    rows.push_back(rowOf(info));
    EXPECT_FALSE(catalogue::groupName(info.key.group).empty()) << info.name;
    EXPECT_EQ(catalogue::isSecret(info.key), info.secret) << info.name;
  }
  EXPECT_EQ(rows, documentedSettings());
}

TEST(SettingCatalogue, NamesTheKinds) {
  using Kind = catalogue::SettingInfo::Kind;
  EXPECT_EQ(catalogue::kindName(Kind::Text), "text");
  EXPECT_EQ(catalogue::kindName(Kind::Number), "number");
  EXPECT_EQ(catalogue::kindName(Kind::Flag), "flag");
  EXPECT_EQ(catalogue::kindName(Kind::Address), "address");
}

TEST(SettingCatalogue, NamesTheGroups) {
  EXPECT_EQ(catalogue::groupName(0x28), "wireless network");
  EXPECT_EQ(catalogue::groupName(0x29), "");
}

TEST(NumberOf, ReadsOneToFourBytes) {
  EXPECT_EQ(catalogue::numberOf(bytes("7F")), 0x7FU);
  EXPECT_EQ(catalogue::numberOf(bytes("01 02")), 0x0102U);
  EXPECT_EQ(catalogue::numberOf(bytes("01 02 03")), 0x010203U);
  EXPECT_EQ(catalogue::numberOf(bytes("FF 02 03 04")), 0xFF020304U);
  EXPECT_FALSE(catalogue::numberOf({}));
  EXPECT_FALSE(catalogue::numberOf(bytes("00 00 00 00 01")));
}

}  // namespace
