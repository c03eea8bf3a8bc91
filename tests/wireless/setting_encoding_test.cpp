#include <cstddef>
#include <gtest/gtest.h>
#include <string>

#include "testing/setting_encoder.h"

// All text settings: limits, terminators, size fields and log lines. The encoder of a row is an
// operation or, for a setting without an operation, the address of its row of the encodings.

namespace {

using support::Bytes;
using support::bytes;
using support::joined;
using support::textBytes;
using G = wnpaGenerator;

struct TextRow : support::Row {
  support::SettingEncoder encoder;
  const char* option;
  const char* header;      ///< header of the object in hex, without the low byte of the size
  std::size_t limit;       ///< size in bytes of the longest text that is not cut
  const char* terminator;  ///< bytes that follow the text
  std::string lineStart;
  const char* quote;
  bool sentWhenEmpty;
};

class TextSetting : public support::SettingEncoders, public testing::WithParamInterface<TextRow> {
 protected:
  /// Expects that `text` is cut at the limit and logged as `logged`. The size field has only the
  /// low byte of the size: it is 0 for 256 bytes.
  void expectText(const std::string& option, const std::string& text, const std::string& logged) {
    const TextRow& row = GetParam();
    const Bytes value = joined({textBytes(text.substr(0, row.limit)), bytes(row.terminator)});
    const bool isSent = !text.empty() || row.sentWhenEmpty;
    expectObject(row.encoder, {row.option + option},
                 isSent
                     ? joined({bytes(row.header), {static_cast<std::uint8_t>(value.size())}, value})
                     : Bytes(),
                 "D [ZVK] " + row.lineStart + row.quote + logged + row.quote + " (" +
                     std::to_string(text.size()) + " bytes)\n");
  }
  void expectText(const std::string& text) { expectText(text, text, text); }
};

/// Returns letters that differ from their neighbours.
std::string letters(std::size_t count) {
  std::string text;
  for (std::size_t i = 0; i < count; ++i) {
    text.push_back(static_cast<char>('a' + i % 26));
  }
  return text;
}

TEST_P(TextSetting, IsSentUpToItsLimitAndLoggedCompletely) {
  const std::size_t limit = GetParam().limit;
  for (const std::size_t size : {std::size_t{1}, limit - 1, limit, limit + 1, std::size_t{65536}}) {
    SCOPED_TRACE(size);
    expectText(letters(size));
  }
}

TEST_P(TextSetting, IsOmittedOrSentAsAHeaderIfEmpty) {
  expectText("");
}

TEST_P(TextSetting, MayHaveAnyBytes) {
  for (const char* text : {"\xFF", "\n", "%", "|", " "}) {
    expectText(text);
  }
}

TEST_P(TextSetting, ContainsTheTextBetweenQuotationMarks) {
  expectText("ab\"c\"d", "c", "c");
}

TEST_P(TextSetting, IsLoggedUpToAZeroByteAndSentCompletely) {
  const std::string zero("\0", 1);
  expectText(zero, zero, "");
}

TextRow keyRow(const char* name, support::SettingEncoder encoder, const char* option,
               const char* header, std::size_t limit, const char* lineStart, const char* quote) {
  return {{name}, encoder, option, header, limit, "", lineStart, quote, true};
}

INSTANTIATE_TEST_SUITE_P(
    Keys, TextSetting,
    testing::Values(keyRow("Psk", &G::constructPSK, "--psk=", "28 11 00 00", 64,
                           "PSK (Pre-shared key) = ", ""),
                    keyRow("WepKey1", &G::constructWEPKey1, "--WEP-key1=", "28 09 00 00", 26,
                           "WEP Key 1 = ", "'"),
                    keyRow("WepKey2", &G::constructWEPKey2, "--WEP-key2=", "28 0B 00 00", 26,
                           "WEP Key 2 = ", "'"),
                    keyRow("WepKey3", &G::constructWEPKey3, "--WEP-key3=", "28 0D 00 00", 26,
                           "WEP Key 3 = ", "'"),
                    keyRow("WepKey4", &G::constructWEPKey4, "--WEP-key4=", "28 0F 00 00", 26,
                           "WEP Key 4 = ", "'")),
    support::rowName);

TextRow textRow(const char* name, support::SettingEncoder encoder, const char* option,
                const char* header, std::size_t limit, const char* terminator,
                const char* lineStart) {
  return {{name}, encoder, option, header, limit, terminator, lineStart, "", false};
}

INSTANTIATE_TEST_SUITE_P(
    Authentication, TextSetting,
    testing::Values(textRow("Username", &G::construct802Username, "--802-user=", "2A 02 00 00", 31,
                            "00", "802.1x User = "),
                    textRow("Password", &G::construct802Passwd, "--802-pwd=", "2A 03 00 00", 255,
                            "00", "802.1x password = "),
                    textRow("PasswordByItsRow", &encodings::Password, "--802-pwd=", "2A 03 00 00",
                            255, "00", "802.1x password = ")),
    support::rowName);

INSTANTIATE_TEST_SUITE_P(
    CertificateFields, TextSetting,
    testing::Values(textRow("FriendlyName", &G::constructCertFriendlyName,
                            "--cer-friendly-name=", "2A 27 00 00", 63, "00", "Cer friendly = "),
                    textRow("AltName", &G::constructCertAltName, "--cer-altname=", "2A 1C 00 00",
                            63, "00", "Cer alt = "),
                    textRow("City", &G::constructCertCity, "--cer-city=", "2A 0B 00 00", 63, "00",
                            "Cer city = "),
                    textRow("State", &G::constructCertState, "--cer-state=", "2A 08 00 00", 63,
                            "00", "Cer state = "),
                    textRow("Unit", &G::constructCertUnit, "--cer-unit=", "2A 07 00 00", 63, "00",
                            "Cer unit = "),
                    textRow("Organization", &G::constructCertOrg, "--cer-org=", "2A 06 00 00", 64,
                            "", "Cer org = "),
                    textRow("CommonName", &G::constructCertCommonName,
                            "--cer-common=", "2A 0A 00 00", 256, "", "Cer common = ")),
    support::rowName);

}  // namespace
