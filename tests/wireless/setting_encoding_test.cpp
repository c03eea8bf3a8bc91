#include "wireless/setting_encoding.h"

#include <algorithm>
#include <cstddef>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "testing/setting_encoder.h"

// What all text settings have in common: limits, terminators, size fields, lines.

namespace {

using support::Bytes;
using support::bytes;
using support::joined;
using support::textBytes;
using G = wnpaGenerator;

/// The object's header for a text of some size.
struct Header {
  std::size_t textSize;
  const char* bytes;
};

struct TextRow : support::Row {
  support::SettingEncoder encoder;
  const char* option;
  std::vector<Header> headers;
  std::size_t copied;      ///< of the text at most
  const char* terminator;  ///< bytes behind the text
  const char* lineStart;
  const char* quote;
  const char* empty;  ///< the object of an empty text
};

class TextSetting : public support::SettingEncoders, public testing::WithParamInterface<TextRow> {
 protected:
  static std::string line(const std::string& shown, std::size_t size) {
    const TextRow& row = GetParam();
    return std::string("D [ZVK] ") + row.lineStart + row.quote + shown + row.quote + " (" +
           std::to_string(size) + " bytes)\n";
  }

  /// Expects the object of a text with this header.
  void expectText(const std::string& text, const Header& header) {
    const TextRow& row = GetParam();
    expectObject(
        row.encoder, {row.option + text},
        joined({bytes(header.bytes), textBytes(text.substr(0, row.copied)), bytes(row.terminator)}),
        line(text, text.size()));
  }

  /// The header for a text of `size` bytes, which the row lists.
  static Header headerOf(std::size_t size) {
    const auto& headers = GetParam().headers;
    return *std::ranges::find(headers, size, &Header::textSize);
  }
};

/// Letters that differ from their neighbours.
std::string letters(std::size_t count) {
  std::string text;
  for (std::size_t i = 0; i < count; ++i) {
    text.push_back(static_cast<char>('a' + i % 26));
  }
  return text;
}

TEST_P(TextSetting, IsCutAtItsLimitAndLoggedWhole) {
  for (const Header& header : GetParam().headers) {
    SCOPED_TRACE(header.textSize);
    expectText(letters(header.textSize), header);
  }
}

TEST_P(TextSetting, IsSentAsNothingOrAHeaderWhenEmpty) {
  expectObject(GetParam().encoder, {GetParam().option}, bytes(GetParam().empty), line("", 0));
  expectObject(GetParam().encoder, {}, bytes(GetParam().empty), line("", 0));
}

TEST_P(TextSetting, MayHoldAnyBytes) {
  for (const char* text : {"\xFF", "\n", "%", "|", " "}) {
    expectText(text, headerOf(1));
  }
}

TEST_P(TextSetting, HoldsWhatStandsBetweenQuotationMarks) {
  const TextRow& row = GetParam();
  expectObject(row.encoder, {std::string(row.option) + "ab\"c\"d"},
               joined({bytes(headerOf(1).bytes), textBytes("c"), bytes(row.terminator)}),
               line("c", 1));
}

TEST_P(TextSetting, IsShownUpToAZeroByteAndSentWhole) {
  const TextRow& row = GetParam();
  const std::string text("\0", 1);
  expectObject(row.encoder, {row.option + text},
               joined({bytes(headerOf(1).bytes), bytes("00"), bytes(row.terminator)}), line("", 1));
}

TextRow keyRow(const char* name, support::SettingEncoder encoder, const char* option,
               std::vector<Header> headers, std::size_t copied, const char* lineStart,
               const char* quote, const char* empty) {
  return {{name}, encoder, option, std::move(headers), copied, "", lineStart, quote, empty};
}

INSTANTIATE_TEST_SUITE_P(Keys, TextSetting,
                         testing::Values(keyRow("Psk", &G::constructPSK, "--psk=",
                                                {{1, "28 11 00 00 01"},
                                                 {63, "28 11 00 00 3F"},
                                                 {64, "28 11 00 00 40"},
                                                 {65, "28 11 00 00 40"},
                                                 {65536, "28 11 00 00 40"}},
                                                64, "PSK (Pre-shared key) = ", "",
                                                "28 11 00 00 00"),
                                         keyRow("WepKey1", &G::constructWEPKey1, "--WEP-key1=",
                                                {{1, "28 09 00 00 01"},
                                                 {25, "28 09 00 00 19"},
                                                 {26, "28 09 00 00 1A"},
                                                 {27, "28 09 00 00 1A"},
                                                 {65536, "28 09 00 00 1A"}},
                                                26, "WEP Key 1 = ", "'", "28 09 00 00 00"),
                                         keyRow("WepKey2", &G::constructWEPKey2, "--WEP-key2=",
                                                {{1, "28 0B 00 00 01"},
                                                 {25, "28 0B 00 00 19"},
                                                 {26, "28 0B 00 00 1A"},
                                                 {27, "28 0B 00 00 1A"},
                                                 {65536, "28 0B 00 00 1A"}},
                                                26, "WEP Key 2 = ", "'", "28 0B 00 00 00"),
                                         keyRow("WepKey3", &G::constructWEPKey3, "--WEP-key3=",
                                                {{1, "28 0D 00 00 01"},
                                                 {25, "28 0D 00 00 19"},
                                                 {26, "28 0D 00 00 1A"},
                                                 {27, "28 0D 00 00 1A"},
                                                 {65536, "28 0D 00 00 1A"}},
                                                26, "WEP Key 3 = ", "'", "28 0D 00 00 00"),
                                         keyRow("WepKey4", &G::constructWEPKey4, "--WEP-key4=",
                                                {{1, "28 0F 00 00 01"},
                                                 {25, "28 0F 00 00 19"},
                                                 {26, "28 0F 00 00 1A"},
                                                 {27, "28 0F 00 00 1A"},
                                                 {65536, "28 0F 00 00 1A"}},
                                                26, "WEP Key 4 = ", "'", "28 0F 00 00 00")),
                         support::rowName);

TextRow textRow(const char* name, support::SettingEncoder encoder, const char* option,
                std::vector<Header> headers, std::size_t copied, const char* terminator,
                const char* lineStart) {
  return {{name}, encoder, option, std::move(headers), copied, terminator, lineStart, "", ""};
}

INSTANTIATE_TEST_SUITE_P(Authentication, TextSetting,
                         testing::Values(textRow("Username", &G::construct802Username,
                                                 "--802-user=",
                                                 {{1, "2A 02 00 00 02"},
                                                  {30, "2A 02 00 00 1F"},
                                                  {31, "2A 02 00 00 20"},
                                                  {32, "2A 02 00 00 20"},
                                                  {65536, "2A 02 00 00 20"}},
                                                 31, "00", "802.1x User = "),
                                         // The size field of 256 bytes reads 0.
                                         textRow("Password", &G::construct802Passwd, "--802-pwd=",
                                                 {{1, "2A 03 00 00 02"},
                                                  {254, "2A 03 00 00 FF"},
                                                  {255, "2A 03 00 00 00"},
                                                  {256, "2A 03 00 00 00"},
                                                  {300, "2A 03 00 00 00"},
                                                  {65536, "2A 03 00 00 00"}},
                                                 255, "00", "802.1x password = ")),
                         support::rowName);

INSTANTIATE_TEST_SUITE_P(
    CertificateFields, TextSetting,
    testing::Values(textRow("FriendlyName", &G::constructCertFriendlyName, "--cer-friendly-name=",
                            {{1, "2A 27 00 00 02"},
                             {62, "2A 27 00 00 3F"},
                             {63, "2A 27 00 00 40"},
                             {64, "2A 27 00 00 40"},
                             {100, "2A 27 00 00 40"},
                             {65536, "2A 27 00 00 40"}},
                            63, "00", "Cer friendly = "),
                    textRow("AltName", &G::constructCertAltName, "--cer-altname=",
                            {{1, "2A 1C 00 00 02"},
                             {62, "2A 1C 00 00 3F"},
                             {63, "2A 1C 00 00 40"},
                             {64, "2A 1C 00 00 40"},
                             {65536, "2A 1C 00 00 40"}},
                            63, "00", "Cer alt = "),
                    textRow("City", &G::constructCertCity, "--cer-city=",
                            {{1, "2A 0B 00 00 02"},
                             {62, "2A 0B 00 00 3F"},
                             {63, "2A 0B 00 00 40"},
                             {64, "2A 0B 00 00 40"},
                             {65536, "2A 0B 00 00 40"}},
                            63, "00", "Cer city = "),
                    textRow("State", &G::constructCertState, "--cer-state=",
                            {{1, "2A 08 00 00 02"},
                             {62, "2A 08 00 00 3F"},
                             {63, "2A 08 00 00 40"},
                             {64, "2A 08 00 00 40"},
                             {65536, "2A 08 00 00 40"}},
                            63, "00", "Cer state = "),
                    textRow("Unit", &G::constructCertUnit, "--cer-unit=",
                            {{1, "2A 07 00 00 02"},
                             {62, "2A 07 00 00 3F"},
                             {63, "2A 07 00 00 40"},
                             {64, "2A 07 00 00 40"},
                             {65536, "2A 07 00 00 40"}},
                            63, "00", "Cer unit = "),
                    textRow("Organization", &G::constructCertOrg, "--cer-org=",
                            {{1, "2A 06 00 00 01"},
                             {63, "2A 06 00 00 3F"},
                             {64, "2A 06 00 00 40"},
                             {65, "2A 06 00 00 40"},
                             {65536, "2A 06 00 00 40"}},
                            64, "", "Cer org = "),
                    // The size field of 256 bytes reads 0.
                    textRow("CommonName", &G::constructCertCommonName, "--cer-common=",
                            {{1, "2A 0A 00 00 01"},
                             {255, "2A 0A 00 00 FF"},
                             {256, "2A 0A 00 00 00"},
                             {257, "2A 0A 00 00 00"},
                             {65536, "2A 0A 00 00 00"}},
                            256, "", "Cer common = ")),
    support::rowName);

}  // namespace
