#include <gtest/gtest.h>
#include <string>
#include <utility>
#include <vector>

#include "session/profile.h"

namespace {

using session::Profile;
using session::Security;

Profile enterprise(std::vector<std::string> methods) {
  return {.security = Security::Enterprise, .eapMethods = std::move(methods)};
}

const Profile Open = {.security = Security::Open};
const Profile Wep = {.security = Security::Wep};
const Profile Wpa = {.security = Security::Wpa};
const Profile Enterprise = enterprise({"peap"});

constexpr const char* WpaRule = "8 to 63 printable ASCII characters, or 64 hex digits";
constexpr const char* WepRule = "5 or 13 printable ASCII characters, or 10 or 26 hex digits";
constexpr const char* PasswordRule = "a password of 1 to 254 bytes";
constexpr const char* NoPassword = "no password, because these settings need none";

TEST(Secrets, AreNeededUnlessNothingChecksThem) {
  EXPECT_FALSE(session::needsSecret(Open));
  EXPECT_TRUE(session::needsSecret(Wep));
  EXPECT_TRUE(session::needsSecret(Wpa));
  EXPECT_TRUE(session::needsSecret(Enterprise));
  EXPECT_TRUE(session::needsSecret(enterprise({"tls", "peap"})));
  EXPECT_TRUE(session::needsSecret(enterprise({"ttls"})));
  EXPECT_FALSE(session::needsSecret(enterprise({"tls"})));
}

TEST(Secrets, OfWpaHave8To63CharactersOr64HexDigits) {
  for (const std::size_t size : {8U, 9U, 62U, 63U}) {
    EXPECT_EQ(session::checkSecret(Wpa, std::string(size, 'z')), nullptr) << size;
  }
  for (const std::size_t size : {0U, 1U, 7U, 64U, 65U}) {
    EXPECT_STREQ(session::checkSecret(Wpa, std::string(size, 'z')), WpaRule) << size;
  }
  EXPECT_EQ(session::checkSecret(Wpa, std::string(63, 'a')), nullptr);
  EXPECT_EQ(session::checkSecret(Wpa, std::string(48, '0') + "123456789abcdEFf"), nullptr);
  EXPECT_STREQ(session::checkSecret(Wpa, std::string(65, 'a')), WpaRule);
  EXPECT_STREQ(session::checkSecret(Wpa, std::string(63, 'a') + "g"), WpaRule);
}

TEST(Secrets, OfWpaArePrintable) {
  std::string all;
  for (char c = ' '; c <= '~'; ++c) {
    all += c;
  }
  EXPECT_EQ(all.size(), 95U);
  EXPECT_EQ(session::checkSecret(Wpa, all.substr(0, 63)), nullptr);
  EXPECT_EQ(session::checkSecret(Wpa, all.substr(32)), nullptr);
  for (const char c : {'\0', '\t', '\n', '\r', '\x1F', '\x7F', '\x80', '\xC3', '\xFF'}) {
    EXPECT_STREQ(session::checkSecret(Wpa, std::string("hunter2") + c), WpaRule) << int{c};
  }
  EXPECT_EQ(session::checkSecret(Wpa, R"( "two\ w'ords" )"), nullptr);
}

TEST(Secrets, OfWepHave5Or13CharactersOr10Or26HexDigits) {
  for (std::size_t size = 0; size <= 30; ++size) {
    const bool isText = size == 5 || size == 13;
    const bool isHex = size == 10 || size == 26;
    const char* const text = session::checkSecret(Wep, std::string(size, 'z'));
    const char* const hex = session::checkSecret(Wep, std::string(size, 'F'));
    EXPECT_STREQ(text, isText ? nullptr : WepRule) << size;
    EXPECT_STREQ(hex, isText || isHex ? nullptr : WepRule) << size;
  }
  EXPECT_EQ(session::checkSecret(Wep, R"( "\' )"), nullptr);
  EXPECT_EQ(session::checkSecret(Wep, "0123456789"), nullptr);
  EXPECT_EQ(session::checkSecret(Wep, "abcdefABCDEF01234567899999"), nullptr);
  EXPECT_STREQ(session::checkSecret(Wep, "012345678g"), WepRule);
  EXPECT_STREQ(session::checkSecret(Wep, "abc\xC3\xA9"), WepRule);
  EXPECT_STREQ(session::checkSecret(Wep, std::string("abc\0d", 5)), WepRule);
}

TEST(Secrets, Of8021xHave1To254Bytes) {
  for (const std::size_t size : {1U, 2U, 253U, 254U}) {
    EXPECT_EQ(session::checkSecret(Enterprise, std::string(size, '\xC3')), nullptr) << size;
  }
  for (const std::size_t size : {0U, 255U, 256U}) {
    EXPECT_STREQ(session::checkSecret(Enterprise, std::string(size, 'p')), PasswordRule) << size;
  }
  EXPECT_STREQ(session::checkSecret(Enterprise, std::string("a\0b", 3)), PasswordRule);
  EXPECT_EQ(session::checkSecret(Enterprise, R"( "two\ w'ords" )"), nullptr);
}

TEST(Secrets, AreNotAllowedIfNoneIsNeeded) {
  for (const Profile& profile : {Open, enterprise({"tls"})}) {
    EXPECT_EQ(session::checkSecret(profile, ""), nullptr);
    EXPECT_STREQ(session::checkSecret(profile, "hunter22"), NoPassword);
  }
}

}  // namespace
