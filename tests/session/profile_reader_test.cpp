#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "profiles.h"
#include "session/profile.h"

namespace {

using profiles::NoProblem;
using profiles::Problem;
using profiles::problemOf;
using session::Profile;
using session::ProfileError;
using session::ProfileReader;
using session::SecretSource;
using session::Security;

constexpr const char* File = "office.conf";

TEST(ProfileErrors, AreALineOfAllParts) {
  EXPECT_STREQ(ProfileError("--mode", "adhoc", "infrastructure or ad-hoc").what(),
               "--mode: expected infrastructure or ad-hoc, got 'adhoc'");
  EXPECT_STREQ(ProfileError("--ssid", "", "a network name").what(),
               "--ssid: expected a network name");
}

TEST(ProfileReading, HasDefaults) {
  const Profile profile = profiles::profileOf({{"ssid", "home"}, {"security", "open"}});
  EXPECT_EQ(profile, (Profile{.ssid = "home",
                              .security = Security::Open,
                              .adHoc = false,
                              .channel = std::nullopt,
                              .encryption = "auto",
                              .wepAuth = "open"}));
}

TEST(ProfileReading, TakesTheLastOfTwoOptions) {
  EXPECT_EQ(profiles::profileOf({{"ssid", "a"}, {"security", "open"}, {"ssid", "b"}}).ssid, "b");
}

TEST(ProfileReading, KeepsItsValuesWhenAnOptionIsWrong) {
  ProfileReader reader = profiles::readerOf({{"ssid", "home"}, {"security", "open"}});
  EXPECT_NE(problemOf([&] { reader.set("ssid", "", "--ssid"); }), NoProblem);
  EXPECT_NE(problemOf([&] { reader.set("security", "WPA3", "--security"); }), NoProblem);
  EXPECT_EQ(reader.finish().ssid, "home");
}

TEST(ProfileReading, ListsTheKeysForAnUnknownOne) {
  ProfileReader reader;
  const Problem problem = {"--passwrod", "",
                           "ssid, security, mode, channel, encryption, wep-auth, user, eap, inner, "
                           "password-from"};
  EXPECT_EQ(problemOf([&] { reader.set("passwrod", "hunter22", "--passwrod"); }), problem);
}

TEST(ProfileReading, LetsAnOptionOverrideTheFile) {
  constexpr const char* text = "ssid=file\nsecurity=wep\nmode=ad-hoc\nchannel=3\n";
  ProfileReader before;
  before.set("ssid", "option", "--ssid");
  before.set("security", "open", "--security");
  before.readText(text, File, false);
  ProfileReader after;
  after.readText(text, File, false);
  after.set("ssid", "option", "--ssid");
  after.set("security", "open", "--security");
  for (const Profile& profile : {before.finish(), after.finish()}) {
    EXPECT_EQ(profile,
              (Profile{.ssid = "option", .security = Security::Open, .adHoc = true, .channel = 3}));
  }
}

TEST(ProfileReading, ChecksALineThatAnOptionOverrides) {
  ProfileReader reader = profiles::readerOf({{"security", "wpa"}});
  EXPECT_EQ(problemOf([&] { reader.readText("security=wpa9\n", File, false); }),
            (Problem{"office.conf:1: security", "wpa9", "open, wep, wpa or 802.1x"}));
}

TEST(ProfileReading, LetsTheFirstOfTwoFilesWin) {
  ProfileReader reader;
  reader.readText("ssid=first\nsecurity=open\n", File, false);
  reader.readText("ssid=second\nmode=ad-hoc\n", "other.conf", false);
  const Profile profile = reader.finish();
  EXPECT_EQ(profile.ssid, "first");
  EXPECT_TRUE(profile.adHoc);
}

TEST(ProfileReading, NamesTheLineOfAValueThatDoesNotFit) {
  ProfileReader reader;
  reader.readText("ssid=home\n# the channel\nsecurity=open\nchannel=3\n", File, false);
  EXPECT_EQ(problemOf([&] { (void)reader.finish(); }),
            (Problem{"office.conf:4: channel", "3", "no value unless mode=ad-hoc"}));
}

// --- Secrets ------------------------------------------------------------------------------------

TEST(ProfileReading, HasNoSourceOfTheSecretAtFirst) {
  EXPECT_EQ(ProfileReader().secretSource(), SecretSource());
}

TEST(ProfileReading, KeepsThePasswordOfAFileOutOfTheProfile) {
  ProfileReader reader;
  reader.readText("ssid=home\nsecurity=wpa\npassword=hunter22\n", File, true);
  EXPECT_EQ(reader.secretSource(), (SecretSource{.kind = SecretSource::Kind::Inline,
                                                 .secret = session::Secret("hunter22")}));
  EXPECT_TRUE(reader.finish().secret.isEmpty());
}

TEST(ProfileReading, HoldsAShortPasswordInHeapMemory) {
  ProfileReader reader;
  reader.readText("password=hunter22\n", File, true);
  const session::Secret& secret = reader.secretSource().secret;
  const char* const object = reinterpret_cast<const char*>(&secret);
  const bool isInside =
      secret.text().data() >= object && secret.text().data() < object + sizeof secret;
  EXPECT_FALSE(isInside);
}

TEST(ProfileReading, LetsAnOptionOverrideThePasswordOfAFile) {
  constexpr const char* text = "ssid=home\nsecurity=wpa\npassword=hunter22\n";
  ProfileReader before;
  before.set("password-from", "fd:3", "--password-from");
  before.readText(text, File, true);
  ProfileReader after;
  after.readText(text, File, true);
  after.set("password-from", "fd:3", "--password-from");
  const SecretSource source = {.kind = SecretSource::Kind::Descriptor, .descriptor = 3};
  EXPECT_EQ(before.secretSource(), source);
  EXPECT_EQ(after.secretSource(), source);
}

TEST(ProfileReading, RefusesThePasswordOfAFileThatOthersCanRead) {
  for (const bool isOverridden : {false, true}) {
    ProfileReader reader;
    if (isOverridden) {
      reader.set("password-from", "prompt", "--password-from");
    }
    EXPECT_EQ(problemOf([&] { reader.readText("\npassword=hunter22\n", File, false); }),
              (Problem{"office.conf:2: password", "",
                       "a settings file of your own that nobody else can read (chmod 600), because "
                       "it contains a password"}));
  }
}

TEST(ProfileReading, ChecksThePasswordOfAFile) {
  ProfileReader reader;
  reader.readText("ssid=home\nsecurity=WPA2\npassword=hunter2\n", File, true);
  EXPECT_EQ(problemOf([&] { (void)reader.finish(); }),
            (Problem{"office.conf:3: password", "",
                     "8 to 63 printable ASCII characters, or 64 hex digits"}));
}

TEST(ProfileReading, KeepsBlanksQuotesAndBackslashesOfAPassword) {
  ProfileReader reader;
  reader.readText("  password \t=  \"two\\words' # \t\r\n", File, true);
  EXPECT_EQ(reader.secretSource().secret.text(), "  \"two\\words' # \t");
}

TEST(ProfileReading, NeverShowsASecretInAnError) {
  constexpr const char* secret = "hunter22";
  const std::vector<std::string> texts = {
      "password=hunter22\npassword=hunter22\n",
      "password=hunter22\npassword-from=prompt\n",
      "password-from=hunter22\n",
      "pasword=hunter22\n",
      "psk = hunter22\n",
      "hunter22\n",
      "hunter22=\n",
      "password hunter22\n",
      "password=hunter22" + std::string(4096, ' '),
      "password=hunter22" + std::string(1, '\0'),
      "password=hunter22\nssid=home\nsecurity=open\n",
      "password=hunter22\nssid=home\nsecurity=wep\n",
  };
  for (const std::string& text : texts) {
    for (const bool mayHoldPassword : {false, true}) {
      const Problem problem = problemOf([&] {
        ProfileReader reader;
        try {
          reader.readText(text, File, mayHoldPassword);
          (void)reader.finish();
        } catch (const ProfileError& error) {
          EXPECT_EQ(std::string(error.what()).find(secret), std::string::npos) << error.what();
          throw;
        }
      });
      EXPECT_NE(problem, NoProblem) << text;
      EXPECT_EQ(problem.subject.find(secret), std::string::npos) << problem;
      EXPECT_EQ(problem.got.find(secret), std::string::npos) << problem;
      EXPECT_EQ(problem.expected.find(secret), std::string::npos) << problem;
    }
  }
}

}  // namespace
