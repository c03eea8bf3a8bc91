#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "profiles.h"
#include "testing/rows.h"

namespace {

using profiles::NoProblem;
using profiles::Problem;
using profiles::problemOf;
using profiles::Settings;

/// Returns the error of a profile with the network name "home" and these settings.
Problem problemWith(Settings settings) {
  settings.emplace_back("ssid", "home");
  return problemOf([&] { (void)profiles::profileOf(settings); });
}

const Settings Enterprise = {{"security", "802.1x"}, {"user", "u"}, {"eap", "peap"}};

Settings with(Settings settings, const Settings& more) {
  settings.insert(settings.end(), more.begin(), more.end());
  return settings;
}

// --- Needed settings ----------------------------------------------------------------------------

TEST(ProfileFit, NeedsANetworkNameAndASecurity) {
  EXPECT_EQ(problemOf([] {
              (void)profiles::profileOf({{"security", "open"}});
            }),
            (Problem{"--ssid", "", "a network name of 1 to 32 bytes"}));
  EXPECT_EQ(problemOf([] {
              (void)profiles::profileOf({{"ssid", "home"}});
            }),
            (Problem{"--security", "", "open, wep, wpa or 802.1x"}));
}

TEST(ProfileFit, NeedsUserAndMethodsWith8021x) {
  EXPECT_EQ(problemWith({{"security", "802.1X"}, {"eap", "peap"}}),
            (Problem{"--user", "", "a user name of 1 to 31 bytes"}));
  EXPECT_EQ(problemWith({{"security", "802.1X"}, {"user", "u"}}),
            (Problem{"--eap", "", "a list of md5, mschapv2, leap, peap, tls and ttls"}));
  EXPECT_EQ(problemWith(Enterprise), NoProblem);
}

// --- Settings that fit some securities only -----------------------------------------------------

struct FitRow : support::Row {
  Settings settings;
  Problem problem;
};

class Fit : public testing::TestWithParam<FitRow> {};

TEST_P(Fit, IsChecked) {
  EXPECT_EQ(problemWith(GetParam().settings), GetParam().problem);
}

INSTANTIATE_TEST_SUITE_P(
    Modes, Fit,
    testing::Values(
        FitRow{{"InfrastructureFitsAll"}, with(Enterprise, {{"mode", "infrastructure"}}), {}},
        FitRow{{"AdHocOpen"}, {{"security", "open"}, {"mode", "ad-hoc"}}, {}},
        FitRow{{"AdHocWep"}, {{"security", "wep"}, {"mode", "ad-hoc"}}, {}},
        FitRow{{"AdHocWpa"}, {{"security", "wpa"}, {"mode", "ad-hoc"}}, {}},
        FitRow{{"AdHoc8021x"},
               with(Enterprise, {{"mode", "ad-hoc"}}),
               {"--mode", "ad-hoc", "infrastructure, because security=802.1x"}},
        FitRow{
            {"ChannelOfAdHoc"}, {{"security", "open"}, {"mode", "ad-hoc"}, {"channel", "11"}}, {}},
        FitRow{{"ChannelByDefault"},
               {{"security", "open"}, {"channel", "11"}},
               {"--channel", "11", "no value unless mode=ad-hoc"}},
        FitRow{{"ChannelOfInfrastructure"},
               {{"security", "wpa"}, {"mode", "infrastructure"}, {"channel", "6"}},
               {"--channel", "6", "no value unless mode=ad-hoc"}}),
    support::rowName);

constexpr const char* NoEncryption = "no value unless security=wpa or security=802.1x";
constexpr const char* NoWepEncryption = "auto, tkip or aes unless security=802.1x";
constexpr const char* NoWepAuth = "no value unless security=wep";

INSTANTIATE_TEST_SUITE_P(
    Encryptions, Fit,
    testing::Values(
        FitRow{{"AutoOpen"},
               {{"security", "open"}, {"encryption", "auto"}},
               {"--encryption", "auto", NoEncryption}},
        FitRow{{"AesOpen"},
               {{"security", "open"}, {"encryption", "aes"}},
               {"--encryption", "aes", NoEncryption}},
        FitRow{{"AesWep"},
               {{"security", "wep"}, {"encryption", "AES"}},
               {"--encryption", "AES", NoEncryption}},
        FitRow{{"AutoWpa"}, {{"security", "wpa"}, {"encryption", "auto"}}, {}},
        FitRow{{"TkipWpa"}, {{"security", "wpa"}, {"encryption", "tkip"}}, {}},
        FitRow{{"AesWpa"}, {{"security", "wpa"}, {"encryption", "aes"}}, {}},
        FitRow{{"DynamicWepWpa"},
               {{"security", "wpa"}, {"encryption", "wep-dynamic"}},
               {"--encryption", "wep-dynamic", NoWepEncryption}},
        FitRow{{"StaticWepWpa"},
               {{"security", "wpa"}, {"encryption", "wep-static"}},
               {"--encryption", "wep-static", NoWepEncryption}},
        FitRow{{"Auto8021x"}, with(Enterprise, {{"encryption", "auto"}}), {}},
        FitRow{{"Tkip8021x"}, with(Enterprise, {{"encryption", "tkip"}}), {}},
        FitRow{{"Aes8021x"}, with(Enterprise, {{"encryption", "aes"}}), {}},
        FitRow{{"DynamicWep8021x"}, with(Enterprise, {{"encryption", "wep-dynamic"}}), {}},
        FitRow{{"StaticWep8021x"}, with(Enterprise, {{"encryption", "wep-static"}}), {}},
        FitRow{{"WepAuthWep"}, {{"security", "wep"}, {"wep-auth", "shared"}}, {}},
        FitRow{{"WepAuthOpen"},
               {{"security", "open"}, {"wep-auth", "open"}},
               {"--wep-auth", "open", NoWepAuth}},
        FitRow{{"WepAuthWpa"},
               {{"security", "wpa"}, {"wep-auth", "shared"}},
               {"--wep-auth", "shared", NoWepAuth}},
        FitRow{{"WepAuth8021x"},
               with(Enterprise, {{"wep-auth", "shared"}}),
               {"--wep-auth", "shared", NoWepAuth}}),
    support::rowName);

constexpr const char* OnlyEnterprise = "no value unless security=802.1x";
constexpr const char* OnlyTunnels = "no value unless eap has peap or ttls";

INSTANTIATE_TEST_SUITE_P(
    Authentication, Fit,
    testing::Values(
        FitRow{
            {"UserOpen"}, {{"security", "open"}, {"user", "u"}}, {"--user", "u", OnlyEnterprise}},
        FitRow{{"UserWpa"}, {{"security", "wpa"}, {"user", "u"}}, {"--user", "u", OnlyEnterprise}},
        FitRow{
            {"EapWep"}, {{"security", "wep"}, {"eap", "peap"}}, {"--eap", "peap", OnlyEnterprise}},
        FitRow{
            {"EapWpa"}, {{"security", "wpa"}, {"eap", "peap"}}, {"--eap", "peap", OnlyEnterprise}},
        FitRow{{"InnerWpa"},
               {{"security", "wpa"}, {"inner", "pap"}},
               {"--inner", "pap", OnlyEnterprise}},
        FitRow{{"InnerOfPeap"}, with(Enterprise, {{"inner", "MSCHAPV2"}}), {}},
        FitRow{{"InnerOfTtls"}, with(Enterprise, {{"eap", "tls,ttls"}, {"inner", "pap"}}), {}},
        FitRow{{"InnerOfOthers"},
               with(Enterprise, {{"eap", "md5,mschapv2,leap,tls"}, {"inner", "pap"}}),
               {"--inner", "pap", OnlyTunnels}}),
    support::rowName);

constexpr const char* NoPassword = "no password, because these settings need none";

INSTANTIATE_TEST_SUITE_P(
    Passwords, Fit,
    testing::Values(FitRow{{"FromAPromptOpen"},
                           {{"security", "open"}, {"password-from", "prompt"}},
                           {"--password-from", "", NoPassword}},
                    FitRow{{"FromAFileOpen"},
                           {{"security", "open"}, {"password-from", "file:key"}},
                           {"--password-from", "", NoPassword}},
                    FitRow{{"OfTlsAlone"},
                           with(Enterprise, {{"eap", "tls"}, {"password-from", "fd:3"}}),
                           {"--password-from", "", NoPassword}},
                    FitRow{{"OfTlsAmongOthers"},
                           with(Enterprise, {{"eap", "tls,peap"}, {"password-from", "fd:3"}}),
                           {}},
                    FitRow{{"OfWep"}, {{"security", "wep"}, {"password-from", "prompt"}}, {}},
                    FitRow{{"OfWpa"}, {{"security", "wpa"}, {"password-from", "fd:0"}}, {}}),
    support::rowName);

}  // namespace
