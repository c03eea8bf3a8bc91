#include <algorithm>
#include <gtest/gtest.h>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "settings/option_table.h"
#include "testing/generator.h"
#include "testing/output.h"
#include "testing/rows.h"

// The words that the manual and the completions offer for an option: the encoders know each of
// them.

namespace {

using support::Bytes;
using support::outputOf;
using G = wnpaGenerator;

struct WordsRow : support::Row {
  const char* key;
  int (*encode)(G& generator);
  /// Encoded like a text that the encoder does not know, so that it cannot be told apart.
  std::vector<std::string_view> likeUnknown;
};

template <auto Construct>
int call(G& generator) {
  if constexpr (std::is_invocable_v<decltype(Construct), G&>) {
    return (generator.*Construct)();
  } else {
    int total = 0;
    return (generator.*Construct)(&total);
  }
}

class OptionWords : public support::Generator, public testing::WithParamInterface<WordsRow> {
 protected:
  /// The object that the row's encoder appends for a value.
  Bytes encoded(std::string_view value) {
    outputOf([&] {
      use({GetParam().key + std::string(value)});
      GetParam().encode(*generator);
    });
    const auto packet = generator->packet();
    return {packet.begin(), packet.end()};
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
        WordsRow{{"Mode"}, "--mode=", call<&G::constructMode>, {"Managed"}},
        WordsRow{{"Channel"}, "--channel=", call<&G::constructChannel>, {"6"}},
        WordsRow{{"Security"}, "--security=", call<&G::constructSecurity>, {"None", "OPEN"}},
        WordsRow{{"Encryption"}, "--encryption=", call<&G::construct802EncryptMode>, {"NONE"}},
        WordsRow{{"AuthMethods"}, "--802-auth-ext=", call<&G::construct802AuthExtension>, {}},
        WordsRow{{"InnerAuth"}, "--802-auth-inner=", call<&G::construct802AuthInner>, {"CHAP"}},
        WordsRow{{"WepTransmit"}, "--WEP-transmit=", call<&G::constructWEPTransmit>, {}}),
    support::rowName);

TEST(SettingOptions, HaveWordsIfTheirKindSaysSo) {
  for (const SettingOption& option : SettingOptions) {
    const bool takesWords =
        option.kind == SettingOption::Kind::Word || option.kind == SettingOption::Kind::WordList;
    EXPECT_EQ(!option.words.front().list.empty(), takesWords) << option.key;
  }
}

}  // namespace
