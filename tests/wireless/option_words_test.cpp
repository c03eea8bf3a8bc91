#include <algorithm>
#include <gtest/gtest.h>
#include <string>
#include <string_view>
#include <vector>

#include "settings/option_table.h"
#include "testing/setting_encoder.h"

// Checks that an option's encoder knows each word that the manual and the completions offer for it.

namespace {

using support::Bytes;
using support::outputOf;
using G = wnpaGenerator;

struct WordsRow : support::Row {
  const char* key;
  support::SettingEncoder encoder;
  /// The words that are encoded like an unknown text. The test cannot distinguish them.
  std::vector<std::string_view> likeUnknown;
};

class OptionWords : public support::SettingEncoders, public testing::WithParamInterface<WordsRow> {
 protected:
  /// Returns the object that the row's encoder appends for a value.
  Bytes encoded(std::string_view value) {
    outputOf([&] {
      use({GetParam().key + std::string(value)});
      encode(GetParam().encoder);
    });
    return packet();
  }
};

TEST_P(OptionWords, AreKnownToTheEncoder) {
  const auto* const option = std::ranges::find(SettingOptions, GetParam().key, &SettingOption::key);
  ASSERT_NE(option, SettingOptions.end());
  const Bytes unknown = encoded("?");
  int count = 0;
  for (const SettingOption::Words& words : option->words) {
    for (const std::string_view word : words.list) {
      ++count;
      const bool expected = std::ranges::count(GetParam().likeUnknown, word) > 0;
      EXPECT_EQ(encoded(word) == unknown, expected) << word;
    }
  }
  EXPECT_GT(count, 1);
}

INSTANTIATE_TEST_SUITE_P(
    Options, OptionWords,
    testing::Values(
        WordsRow{{"Mode"}, "--mode=", &G::constructMode, {"Managed"}},
        WordsRow{{"Channel"}, "--channel=", &G::constructChannel, {"6"}},
        WordsRow{{"Security"}, "--security=", &G::constructSecurity, {"None", "OPEN"}},
        WordsRow{{"Encryption"}, "--encryption=", &G::construct802EncryptMode, {"NONE"}},
        WordsRow{{"AuthMethods"}, "--802-auth-ext=", &G::construct802AuthExtension, {}},
        WordsRow{{"InnerAuth"}, "--802-auth-inner=", &G::construct802AuthInner, {"CHAP"}},
        WordsRow{{"WepTransmit"}, "--WEP-transmit=", &G::constructWEPTransmit, {}}),
    support::rowName);

TEST(SettingOptions, HaveWordsIfTheirKindRequiresThem) {
  for (const SettingOption& option : SettingOptions) {
    const bool takesWords =
        option.kind == SettingOption::Kind::Word || option.kind == SettingOption::Kind::WordList;
    EXPECT_EQ(!option.words.front().list.empty(), takesWords) << option.key;
  }
}

}  // namespace
