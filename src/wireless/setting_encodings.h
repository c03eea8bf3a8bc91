#pragma once

#include <array>

#include "wireless/setting_encoding.h"

/// The settings whose bytes depend only on their text, one row each. The other settings have
/// separate encoders in `wnpaGenerator`. The batches in sequences.cpp name the rows.
namespace encodings {

using Value = SettingEncoding::Value;

// Settings that every network needs.

inline constexpr SettingEncoding Ssid = {.key = npa::settings::Ssid,
                                         .source = Setting::Ssid,
                                         .label = "SSID",
                                         .value = Value::TerminatedText};

// Only this exact spelling selects the ad-hoc mode, on purpose. The help text spells the mode
// "Ad-hoc", and that text selects the managed mode.
inline constexpr std::array ModeCodes = {TextCode{"Ad-Hoc", 1}};
inline constexpr SettingEncoding Mode = {.key = npa::settings::Mode,
                                         .source = Setting::Mode,
                                         .label = "Mode",
                                         .quote = "'",
                                         .value = Value::Code,
                                         .codes = ModeCodes};

// Keys. The characters of a key are sent unchanged, even if they are hex digits, and without a zero
// byte.

inline constexpr SettingEncoding Psk = {.key = npa::settings::PreSharedKey,
                                        .source = Setting::Psk,
                                        .label = "PSK (Pre-shared key)",
                                        .logsLength = true,
                                        .limit = 64,
                                        .whenEmpty = SettingEncoding::WhenEmpty::HeaderAlone};

/// Returns the row of one WEP key.
constexpr SettingEncoding wepKey(npa::SettingKey key, Setting source, const char* label) {
  return {.key = key,
          .source = source,
          .label = label,
          .quote = "'",
          .logsLength = true,
          .limit = 26,
          .whenEmpty = SettingEncoding::WhenEmpty::HeaderAlone};
}

inline constexpr SettingEncoding WepKey1 =
    wepKey(npa::settings::WepKey1, Setting::WepKey1, "WEP Key 1");
inline constexpr SettingEncoding WepKey2 =
    wepKey(npa::settings::WepKey2, Setting::WepKey2, "WEP Key 2");
inline constexpr SettingEncoding WepKey3 =
    wepKey(npa::settings::WepKey3, Setting::WepKey3, "WEP Key 3");
inline constexpr SettingEncoding WepKey4 =
    wepKey(npa::settings::WepKey4, Setting::WepKey4, "WEP Key 4");

// 802.1x authentication.

inline constexpr std::array EncryptionCodes = {
    TextCode{"NONE", 0},    TextCode{"WEP-DYNAMIC", 1}, TextCode{"WEP-STATIC", 2},
    TextCode{"WEP", 2},     TextCode{"WPA-TKIP", 3},    TextCode{"TKIP", 3},
    TextCode{"WPA-AES", 4}, TextCode{"AES", 4},
};
inline constexpr SettingEncoding Encryption = {.key = npa::settings::Encryption,
                                               .source = Setting::Encryption,
                                               .label = "Encryption (advanced)",
                                               .value = Value::Code,
                                               .codes = EncryptionCodes};

inline constexpr std::array InnerAuthCodes = {TextCode{"CHAP", 0}, TextCode{"MSCHAP", 1},
                                              TextCode{"MSCHAPv2", 2}, TextCode{"PAP", 3}};
inline constexpr SettingEncoding InnerAuth = {.key = npa::settings::InnerAuth,
                                              .source = Setting::AuthInner,
                                              .label = "802.1x Inner Auth",
                                              .value = Value::Code,
                                              .codes = InnerAuthCodes};

inline constexpr SettingEncoding Username = {.key = npa::settings::AuthUser,
                                             .source = Setting::Username,
                                             .label = "802.1x User",
                                             .logsLength = true,
                                             .value = Value::TerminatedText,
                                             .limit = 32};

/// The length field of the longest password (256 bytes with its zero byte) is 0, on purpose: the
/// field holds only the low byte of 256.
inline constexpr SettingEncoding Password = {
    .key = npa::settings::AuthPassword,
    .source = Setting::Password,
    .label = "802.1x password",
    .logsLength = true,
    .value = Value::TerminatedText,
    .limit = 256,
    .lengthField = SettingEncoding::LengthField::LowByteOnly};

// Fields of a certificate request. Most have at most 64 bytes, including the zero byte.

/// Returns the row of a field with at most 64 bytes, including the zero byte.
constexpr SettingEncoding certField(npa::SettingKey key, Setting source, const char* label) {
  return {.key = key,
          .source = source,
          .label = label,
          .logsLength = true,
          .value = Value::TerminatedText,
          .limit = 64};
}

inline constexpr SettingEncoding CertFriendlyName =
    certField(npa::settings::CertFriendlyName, Setting::CerFriendlyName, "Cer friendly");
inline constexpr SettingEncoding CertAltName =
    certField(npa::settings::CertAlternateName, Setting::CerAltName, "Cer alt");
inline constexpr SettingEncoding CertCity =
    certField(npa::settings::CertCity, Setting::CerCity, "Cer city");
inline constexpr SettingEncoding CertState =
    certField(npa::settings::CertState, Setting::CerState, "Cer state");
inline constexpr SettingEncoding CertUnit =
    certField(npa::settings::CertUnit, Setting::CerUnit, "Cer unit");

// The adapter requires the organisation, the common name and the country without a terminating zero
// byte. The length field of the longest common name (256 bytes) is 0, because the field holds only
// the low byte of the size.
inline constexpr SettingEncoding CertOrganization = {.key = npa::settings::CertOrganization,
                                                     .source = Setting::CerOrg,
                                                     .label = "Cer org",
                                                     .logsLength = true,
                                                     .limit = 64};
inline constexpr SettingEncoding CertCommonName = {
    .key = npa::settings::CertCommonName,
    .source = Setting::CerCommonName,
    .label = "Cer common",
    .logsLength = true,
    .limit = 256,
    .lengthField = SettingEncoding::LengthField::LowByteOnly};
inline constexpr SettingEncoding CertCountry = {.key = npa::settings::CertCountry,
                                                .source = Setting::CerCountry,
                                                .label = "Cer country",
                                                .logsLength = true,
                                                .value = Value::PaddedText,
                                                .limit = 2};

}  // namespace encodings
