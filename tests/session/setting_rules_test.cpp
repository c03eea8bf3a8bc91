#include "session/setting_rules.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "profiles.h"
#include "session/texts.h"
#include "session/words.h"
#include "testing/bytes.h"
#include "testing/rows.h"

namespace {

using profiles::NoProblem;
using profiles::Problem;
using profiles::problemOf;
using session::ProfileReader;
using session::SecretSource;
using session::Security;

constexpr const char* AllKeys =
    "ssid, security, mode, channel, encryption, wep-auth, user, eap, inner, password-from";

/// Stores one value and returns the settings.
ProfileReader::Draft stored(const std::string& key, const std::string& value) {
  ProfileReader::Draft draft;
  session::storeSetting(*session::findRule(key), value, "--" + key, draft);
  return draft;
}

/// Returns the error that this value of an option causes.
Problem rejection(const std::string& key, const std::string& value) {
  ProfileReader reader;
  return problemOf([&] { reader.set(key, value, "--" + key); });
}

TEST(SettingRules, AreInTheOrderInWhichErrorsListThem) {
  std::vector<std::string_view> keys;
  for (const session::SettingRule& rule : session::settingRules()) {
    keys.push_back(rule.key);
  }
  EXPECT_EQ(keys, (std::vector<std::string_view>{"ssid", "security", "mode", "channel",
                                                 "encryption", "wep-auth", "user", "eap", "inner",
                                                 "password-from", "password"}));
  EXPECT_STREQ(session::keysOfOptions(), AllKeys);
  EXPECT_EQ(session::keysOfFiles(), AllKeys + std::string(", password"));
  EXPECT_EQ(session::findRule("sid"), nullptr);
  EXPECT_EQ(session::findRule(""), nullptr);
}

TEST(SettingRules, CompareWordsWithoutTheCaseOfAsciiLetters) {
  EXPECT_EQ(session::lowerCase("AMZ amz @[`{ 09 \xC3\x89"), "amz amz @[`{ 09 \xC3\x89");
  constexpr std::array<std::string_view, 2> words = {"a", "bz"};
  EXPECT_EQ(session::wordIn(words, "BZ"), "bz");
  EXPECT_EQ(session::wordIn(words, "b"), "");
}

// --- Security -----------------------------------------------------------------------------------

struct SecurityRow : support::Row {
  const char* word;
  Security security;
};

class SecurityWord : public testing::TestWithParam<SecurityRow> {};

TEST_P(SecurityWord, IsAcceptedInAnyCase) {
  std::string upper = GetParam().word;
  std::ranges::transform(upper, upper.begin(), [](char c) { return std::toupper(c); });
  std::string mixed = GetParam().word;
  mixed.front() = upper.front();
  for (const std::string& word : {std::string(GetParam().word), upper, mixed}) {
    EXPECT_EQ(stored("security", word).profile.security, GetParam().security) << word;
  }
}

INSTANTIATE_TEST_SUITE_P(
    Words, SecurityWord,
    testing::Values(SecurityRow{{"Open"}, "open", Security::Open},
                    SecurityRow{{"Wep"}, "wep", Security::Wep},
                    SecurityRow{{"Wpa"}, "wpa", Security::Wpa},
                    SecurityRow{{"Wpa2"}, "wpa2", Security::Wpa},
                    SecurityRow{{"WpaPersonal"}, "wpa-personal", Security::Wpa},
                    SecurityRow{{"Ieee8021x"}, "802.1x", Security::Enterprise},
                    SecurityRow{{"WpaEnterprise"}, "wpa-enterprise", Security::Enterprise},
                    SecurityRow{{"Eap"}, "eap", Security::Enterprise}),
    support::rowName);

TEST(SettingRules, RefuseWpa3WithTheReason) {
  for (const char* word :
       {"wpa3", "WPA3", "Wpa3", "sae", "SAE", "WPA3-Personal", "wpa3-enterprise"}) {
    EXPECT_EQ(rejection("security", word),
              (Problem{"--security", word,
                       "open, wep, wpa or 802.1x (the adapter does not support WPA3)"}));
  }
}

TEST(SettingRules, NameOpenInsteadOfNone) {
  for (const char* word : {"none", "None"}) {
    EXPECT_EQ(rejection("security", word),
              (Problem{"--security", word,
                       "open, wep, wpa or 802.1x (a network without security is \"open\", not "
                       "\"none\")"}));
  }
}

TEST(SettingRules, GuessNoSecurity) {
  for (const char* word :
       {"", "wpa4", "wpa 2", " wpa", "WPA2-PSK", "802.1", "802.1xx", "shared", "open,wep"}) {
    EXPECT_EQ(rejection("security", word),
              (Problem{"--security", word, "open, wep, wpa or 802.1x"}));
  }
}

// --- Texts --------------------------------------------------------------------------------------

TEST(SettingRules, TakeANetworkNameOf1To32Bytes) {
  constexpr const char* expected = "a network name of 1 to 32 bytes";
  for (const std::size_t size : {1U, 31U, 32U}) {
    EXPECT_EQ(stored("ssid", std::string(size, 's')).profile.ssid, std::string(size, 's'));
  }
  const std::string tooLong(33, 's');
  EXPECT_EQ(rejection("ssid", tooLong), (Problem{"--ssid", tooLong, expected}));
  EXPECT_EQ(rejection("ssid", ""), (Problem{"--ssid", "", expected}));
}

TEST(SettingRules, CountBytesAndNotCharacters) {
  // 32 and 34 bytes.
  EXPECT_EQ(rejection("ssid", support::repeated("\xC3\xA9", 16)), NoProblem);
  EXPECT_NE(rejection("ssid", support::repeated("\xC3\xA9", 17)), NoProblem);
}

TEST(SettingRules, TakeAUserNameOf1To31Bytes) {
  constexpr const char* expected = "a user name of 1 to 31 bytes";
  for (const std::size_t size : {1U, 30U, 31U}) {
    EXPECT_EQ(stored("user", std::string(size, 'u')).profile.user, std::string(size, 'u'));
  }
  for (const std::size_t size : {0U, 32U, 38U}) {
    const std::string name(size, 'u');
    EXPECT_EQ(rejection("user", name), (Problem{"--user", name, expected}));
  }
}

TEST(SettingRules, KeepTextsUnchanged) {
  const std::string text = R"( Two "words" \ 'x' )";
  EXPECT_EQ(stored("ssid", text).profile.ssid, text);
  EXPECT_EQ(stored("user", text).profile.user, text);
}

TEST(SettingRules, RefuseATextWithAZeroByte) {
  EXPECT_NE(rejection("ssid", std::string("a\0b", 3)), NoProblem);
  EXPECT_NE(rejection("user", std::string("a\0b", 3)), NoProblem);
  EXPECT_NE(rejection("password-from", std::string("file:a\0b", 8)), NoProblem);
}

// --- Words --------------------------------------------------------------------------------------

TEST(SettingRules, TakeTheModes) {
  EXPECT_FALSE(stored("mode", "infrastructure").profile.adHoc);
  EXPECT_TRUE(stored("mode", "ad-hoc").profile.adHoc);
  EXPECT_TRUE(stored("mode", "Ad-Hoc").profile.adHoc);
  for (const char* word : {"", "managed", "adhoc"}) {
    EXPECT_EQ(rejection("mode", word), (Problem{"--mode", word, "infrastructure or ad-hoc"}));
  }
}

TEST(SettingRules, TakeTheChannels) {
  for (int channel = 1; channel <= 11; ++channel) {
    EXPECT_EQ(stored("channel", std::to_string(channel)).profile.channel, channel);
  }
  for (const char* text : {"", "0", "12", "-1", "06", "6 ", "+6", "6.0", "111", "six"}) {
    EXPECT_EQ(rejection("channel", text), (Problem{"--channel", text, "a number from 1 to 11"}));
  }
}

struct WordsRow : support::Row {
  const char* key;
  std::string session::Profile::*member;
  std::vector<std::string> words;
  std::vector<std::string> wrong;
  const char* expected;
};

class Words : public testing::TestWithParam<WordsRow> {};

TEST_P(Words, AreStoredInLowerCase) {
  const WordsRow& row = GetParam();
  for (const std::string& word : row.words) {
    std::string upper = word;
    std::ranges::transform(upper, upper.begin(), [](char c) { return std::toupper(c); });
    EXPECT_EQ(stored(row.key, word).profile.*row.member, word);
    EXPECT_EQ(stored(row.key, upper).profile.*row.member, word);
  }
}

TEST_P(Words, ExcludeAllOthers) {
  const WordsRow& row = GetParam();
  for (const std::string& word : row.wrong) {
    EXPECT_EQ(rejection(row.key, word), (Problem{"--" + std::string(row.key), word, row.expected}));
  }
}

INSTANTIATE_TEST_SUITE_P(Settings, Words,
                         testing::Values(WordsRow{{"Encryption"},
                                                  "encryption",
                                                  &session::Profile::encryption,
                                                  {"auto", "tkip", "aes", "wep-dynamic",
                                                   "wep-static"},
                                                  {"", "wep", "ccmp", "none", "wpa-aes"},
                                                  "auto, tkip, aes, wep-dynamic or wep-static"},
                                         WordsRow{{"WepAuth"},
                                                  "wep-auth",
                                                  &session::Profile::wepAuth,
                                                  {"open", "shared"},
                                                  {"", "auto", "share"},
                                                  "open or shared"},
                                         WordsRow{{"Inner"},
                                                  "inner",
                                                  &session::Profile::innerMethod,
                                                  {"chap", "mschap", "mschapv2", "pap"},
                                                  {"", "mschapv3", "md5", "chap,pap"},
                                                  "chap, mschap, mschapv2 or pap"}),
                         support::rowName);

// --- EAP methods --------------------------------------------------------------------------------

struct EapRow : support::Row {
  const char* text;
  std::vector<std::string> methods;
};

class EapList : public testing::TestWithParam<EapRow> {};

TEST_P(EapList, IsSplitIntoMethods) {
  EXPECT_EQ(stored("eap", GetParam().text).profile.eapMethods, GetParam().methods);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, EapList,
    testing::Values(EapRow{{"One"}, "peap", {"peap"}},
                    EapRow{{"UpperCase"}, "MSCHAPV2", {"mschapv2"}},
                    EapRow{{"AllOfThem"},
                           "md5,mschapv2,leap,peap,tls,ttls",
                           {"md5", "mschapv2", "leap", "peap", "tls", "ttls"}},
                    EapRow{{"OtherOrder"}, "ttls,peap", {"ttls", "peap"}},
                    EapRow{{"Blanks"}, "peap ttls\ttls", {"peap", "ttls", "tls"}},
                    EapRow{{"Bars"}, "PEAP|tls", {"peap", "tls"}},
                    EapRow{{"SeveralSeparators"}, " peap, ttls | tls,", {"peap", "ttls", "tls"}},
                    EapRow{{"Duplicates"}, "peap,tls,PEAP,tls", {"peap", "tls"}}),
    support::rowName);

TEST(SettingRules, RefuseOtherEapMethods) {
  for (const char* text : {"", " ", ",", "eap-tls", "peap,fast", "peap;tls", "no-peap"}) {
    EXPECT_EQ(rejection("eap", text),
              (Problem{"--eap", text, "a list of md5, mschapv2, leap, peap, tls and ttls"}));
  }
}

// --- Secrets ------------------------------------------------------------------------------------

TEST(SettingRules, TakeTheSourcesOfASecret) {
  using Kind = SecretSource::Kind;
  const auto source = [](const char* text) {
    return stored("password-from", text).source;
  };
  EXPECT_EQ(source("prompt"), (SecretSource{.kind = Kind::Prompt}));
  EXPECT_EQ(source("Prompt"), (SecretSource{.kind = Kind::Prompt}));
  EXPECT_EQ(source("file:/etc/Key"), (SecretSource{.kind = Kind::File, .path = "/etc/Key"}));
  EXPECT_EQ(source("FILE:a:b c"), (SecretSource{.kind = Kind::File, .path = "a:b c"}));
  EXPECT_EQ(source("fd:0"), (SecretSource{.kind = Kind::Descriptor, .descriptor = 0}));
  EXPECT_EQ(source("fd:2147483647"),
            (SecretSource{.kind = Kind::Descriptor, .descriptor = 2147483647}));
}

TEST(SettingRules, HideAWrongSourceBecauseItMayBeTheSecret) {
  for (const char* text : {"", "hunter22", "file:", "fd:", "fd:-1", "fd:x", "fd:3x", "fd: 3",
                           "fd:2147483648", "prompt:", "file", "stdin:hunter22"}) {
    EXPECT_EQ(rejection("password-from", text),
              (Problem{"--password-from", "", "prompt, file:PATH or fd:N"}));
  }
}

TEST(SettingRules, RefuseASecretAsAnOption) {
  EXPECT_EQ(rejection("password", "hunter22"),
            (Problem{"--password", "",
                     "--password-from=prompt, --password-from=file:PATH or --password-from=fd:N "
                     "(other users can see an argument)"}));
}

}  // namespace
