#pragma once

#include <array>

#include "wireless/setting_encoding.h"

/// The settings whose text alone decides what is sent, one row each. The others have encoders of
/// their own in `wnpaGenerator`. A batch names its rows in sequences.cpp.
namespace encodings {

using Value = SettingEncoding::Value;

// Of every network.

inline constexpr SettingEncoding Ssid = {.key = npa::settings::Ssid,
                                         .source = from<&configDetails::getSSID>,
                                         .label = "SSID",
                                         .value = Value::TerminatedText};

// The exact spelling counts: the help text's "Ad-hoc" selects the managed mode.
inline constexpr std::array ModeCodes = {TextCode{"Ad-Hoc", 1}};
inline constexpr SettingEncoding Mode = {.key = npa::settings::Mode,
                                         .source = from<&configDetails::getMode>,
                                         .label = "Mode",
                                         .quote = "'",
                                         .value = Value::Code,
                                         .codes = ModeCodes};

// Keys: sent as typed, hex digits too, and without a terminating zero byte.

inline constexpr SettingEncoding Psk = {.key = npa::settings::PreSharedKey,
                                        .source = from<&configDetails::getPSK>,
                                        .label = "PSK (Pre-shared key)",
                                        .logsLength = true,
                                        .limit = 64,
                                        .whenEmpty = SettingEncoding::WhenEmpty::HeaderAlone};

template <int Index>
constexpr SettingEncoding wepKey(npa::SettingKey key, const char* label) {
  return {.key = key,
          .source = [](const configDetails& configuration) -> const std::string& {
            return configuration.getWEPKey(Index);
          },
          .label = label,
          .quote = "'",
          .logsLength = true,
          .limit = 26,
          .whenEmpty = SettingEncoding::WhenEmpty::HeaderAlone};
}

inline constexpr SettingEncoding WepKey1 = wepKey<0>(npa::settings::WepKey1, "WEP Key 1");
inline constexpr SettingEncoding WepKey2 = wepKey<1>(npa::settings::WepKey2, "WEP Key 2");
inline constexpr SettingEncoding WepKey3 = wepKey<2>(npa::settings::WepKey3, "WEP Key 3");
inline constexpr SettingEncoding WepKey4 = wepKey<3>(npa::settings::WepKey4, "WEP Key 4");

// 802.1x authentication.

inline constexpr std::array EncryptionCodes = {
    TextCode{"NONE", 0},    TextCode{"WEP-DYNAMIC", 1}, TextCode{"WEP-STATIC", 2},
    TextCode{"WEP", 2},     TextCode{"WPA-TKIP", 3},    TextCode{"TKIP", 3},
    TextCode{"WPA-AES", 4}, TextCode{"AES", 4},
};
inline constexpr SettingEncoding Encryption = {.key = npa::settings::Encryption,
                                               .source = from<&configDetails::get802Encryption>,
                                               .label = "Encryption (advanced)",
                                               .value = Value::Code,
                                               .codes = EncryptionCodes};

inline constexpr std::array InnerAuthCodes = {TextCode{"CHAP", 0}, TextCode{"MSCHAP", 1},
                                              TextCode{"MSCHAPv2", 2}, TextCode{"PAP", 3}};
inline constexpr SettingEncoding InnerAuth = {.key = npa::settings::InnerAuth,
                                              .source = from<&configDetails::get802AuthInner>,
                                              .label = "802.1x Inner Auth",
                                              .value = Value::Code,
                                              .codes = InnerAuthCodes};

inline constexpr SettingEncoding Username = {.key = npa::settings::AuthUser,
                                             .source = from<&configDetails::get802Username>,
                                             .label = "802.1x User",
                                             .logsLength = true,
                                             .value = Value::TerminatedText,
                                             .limit = 32};

/// The length field of the longest password, 256 bytes with its zero byte, reads 0 on purpose.
inline constexpr SettingEncoding Password = {
    .key = npa::settings::AuthPassword,
    .source = from<&configDetails::get802Password>,
    .label = "802.1x password",
    .logsLength = true,
    .value = Value::TerminatedText,
    .limit = 256,
    .lengthField = SettingEncoding::LengthField::LowByteOnly};

// Fields of a certificate request. Most have at most 64 bytes with their terminating zero byte.

template <auto Getter>
constexpr SettingEncoding certField(npa::SettingKey key, const char* label) {
  return {.key = key,
          .source = from<Getter>,
          .label = label,
          .logsLength = true,
          .value = Value::TerminatedText,
          .limit = 64};
}

inline constexpr SettingEncoding CertFriendlyName =
    certField<&configDetails::getCerFriendlyName>(npa::settings::CertFriendlyName, "Cer friendly");
inline constexpr SettingEncoding CertAltName =
    certField<&configDetails::getCerAltName>(npa::settings::CertAlternateName, "Cer alt");
inline constexpr SettingEncoding CertCity =
    certField<&configDetails::getCerCity>(npa::settings::CertCity, "Cer city");
inline constexpr SettingEncoding CertState =
    certField<&configDetails::getCerState>(npa::settings::CertState, "Cer state");
inline constexpr SettingEncoding CertUnit =
    certField<&configDetails::getCerUnit>(npa::settings::CertUnit, "Cer unit");

// The adapter wants these three without a terminating zero byte, and the length field of the
// longest common name as 0.
inline constexpr SettingEncoding CertOrganization = {.key = npa::settings::CertOrganization,
                                                     .source = from<&configDetails::getCerOrg>,
                                                     .label = "Cer org",
                                                     .logsLength = true,
                                                     .limit = 64};
inline constexpr SettingEncoding CertCommonName = {
    .key = npa::settings::CertCommonName,
    .source = from<&configDetails::getCerCommonName>,
    .label = "Cer common",
    .logsLength = true,
    .limit = 256,
    .lengthField = SettingEncoding::LengthField::LowByteOnly};
inline constexpr SettingEncoding CertCountry = {.key = npa::settings::CertCountry,
                                                .source = from<&configDetails::getCerCountry>,
                                                .label = "Cer country",
                                                .logsLength = true,
                                                .value = Value::PaddedText,
                                                .limit = 2};

}  // namespace encodings
