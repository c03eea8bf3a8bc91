// The table of settings, and the functions that describe their values.

#include "catalogue/setting_catalogue.h"

#include <algorithm>
#include <array>

#include "catalogue/hex_text.h"
#include "npa/status_texts.h"

namespace catalogue {

namespace {

using Kind = SettingInfo::Kind;
using Names = std::span<const std::string_view>;

// Meanings of numbers. The index is the number.

constexpr std::array<std::string_view, 2> ModeNames = {"managed", "ad-hoc"};
constexpr std::array<std::string_view, 5> SecurityNames = {"none", "WEP", "WPA (1 or 2)", "802.1x",
                                                           "WPA2 only"};

constexpr std::array<std::string_view, 3> WepAuthNames = {"auto", "open", "shared"};
constexpr std::array<std::string_view, 5> EncryptionNames = {"none", "dynamic WEP", "static WEP",
                                                             "TKIP", "AES"};
constexpr std::array<std::string_view, 4> InnerAuthNames = {"CHAP", "MSCHAP", "MSCHAPv2", "PAP"};

/// The columns are key, name, kind of the value, whether the value is secret, the meanings of the
/// numbers, and whether the size field holds only the low byte of the size.
constexpr std::array Catalogue = {
    SettingInfo{npa::settings::Reset, "adapter reset", Kind::Flag, false, {}},
    SettingInfo{npa::settings::Descriptor, "adapter descriptor", Kind::Text, false, {}},
    SettingInfo{npa::settings::IpAddress, "IP address", Kind::Address, false, {}},
    SettingInfo{npa::settings::Mode, "mode", Kind::Number, false, ModeNames},
    SettingInfo{npa::settings::Channel, "channel", Kind::Number, false, {}},
    SettingInfo{npa::settings::Ssid, "SSID", Kind::Text, false, {}},
    SettingInfo{npa::settings::WepKey1, "WEP key 1", Kind::Text, true, {}},
    SettingInfo{npa::settings::WepKey2, "WEP key 2", Kind::Text, true, {}},
    SettingInfo{npa::settings::WepKey3, "WEP key 3", Kind::Text, true, {}},
    SettingInfo{npa::settings::WepKey4, "WEP key 4", Kind::Text, true, {}},
    SettingInfo{npa::settings::PreSharedKey, "pre-shared key", Kind::Text, true, {}},
    SettingInfo{npa::settings::TroubleCode, "trouble code", Kind::Number, false, {}},
    SettingInfo{npa::settings::WepTransmit, "WEP transmit key", Kind::Number, false, {}},
    SettingInfo{npa::settings::Security, "security", Kind::Number, false, SecurityNames},
    SettingInfo{npa::settings::WepAuth, "WEP authentication", Kind::Number, false, WepAuthNames},
    SettingInfo{npa::settings::Encryption, "encryption", Kind::Number, false, EncryptionNames},
    SettingInfo{npa::settings::AuthUser, "802.1x user", Kind::Text, false, {}},
    SettingInfo{npa::settings::AuthPassword, "802.1x password", Kind::Text, true, {}, true},
    SettingInfo{npa::settings::CertOrganization, "certificate organisation", Kind::Text, false, {}},
    SettingInfo{npa::settings::CertUnit, "certificate unit", Kind::Text, false, {}},
    SettingInfo{npa::settings::CertState, "certificate state", Kind::Text, false, {}},
    SettingInfo{npa::settings::CertCountry, "certificate country", Kind::Text, false, {}},
    SettingInfo{
        npa::settings::CertCommonName, "certificate common name", Kind::Text, false, {}, true},
    SettingInfo{npa::settings::CertCity, "certificate city", Kind::Text, false, {}},
    SettingInfo{npa::settings::CertGenerate, "generate certificate", Kind::Flag, false, {}},
    SettingInfo{npa::settings::CertGenerateStatus,
                "certificate generation status",
                Kind::Number,
                false,
                {}},
    SettingInfo{npa::settings::CertRequest, "certificate request", Kind::Text, false, {}},
    SettingInfo{npa::settings::Certificate, "certificate", Kind::Text, false, {}},
    SettingInfo{npa::settings::CaCertificate, "CA certificate", Kind::Text, false, {}},
    SettingInfo{npa::settings::CaInstalled, "CA certificate installed", Kind::Flag, false, {}},
    SettingInfo{npa::settings::CertSignRequest, "make certificate request", Kind::Flag, false, {}},
    SettingInfo{npa::settings::AuthEnabled, "802.1x authentication enabled", Kind::Flag, false, {}},
    SettingInfo{npa::settings::MethodMd5, "EAP-MD5 allowed", Kind::Flag, false, {}},
    SettingInfo{npa::settings::MethodMsChapV2, "MSCHAPv2 allowed", Kind::Flag, false, {}},
    SettingInfo{npa::settings::MethodLeap, "LEAP allowed", Kind::Flag, false, {}},
    SettingInfo{npa::settings::MethodPeap, "PEAP allowed", Kind::Flag, false, {}},
    SettingInfo{npa::settings::MethodTls, "EAP-TLS allowed", Kind::Flag, false, {}},
    SettingInfo{npa::settings::MethodTtls, "EAP-TTLS allowed", Kind::Flag, false, {}},
    SettingInfo{npa::settings::InnerAuth, "802.1x inner authentication", Kind::Number, false,
                InnerAuthNames},
    SettingInfo{npa::settings::AuthCommonName, "802.1x common name", Kind::Text, false, {}},
    SettingInfo{
        npa::settings::CertAlternateName, "certificate alternative name", Kind::Text, false, {}},
    SettingInfo{npa::settings::AuthStatus, "802.1x authentication status", Kind::Number, false,
                npa::AuthStatusTexts},
    SettingInfo{npa::settings::ValidateCert, "validate server certificate", Kind::Flag, false, {}},
    SettingInfo{npa::settings::AllSecurity, "all security settings", Kind::Text, true, {}},
    SettingInfo{
        npa::settings::CertFriendlyName, "certificate friendly name", Kind::Text, false, {}},
};

std::string describeNumber(std::span<const npa::Byte> value, Names names) {
  const std::optional<std::size_t> number = numberOf(value);
  if (!number) {
    return hexText(value);
  }
  std::string text = std::to_string(*number);
  if (*number < names.size()) {
    text.append(" (").append(names[*number]).append(")");
  }
  return text;
}

std::string describeValue(const SettingInfo& info, std::span<const npa::Byte> value) {
  switch (info.kind) {
    case Kind::Text:
      return quoted(withoutTerminator(value));
    case Kind::Number:
    case Kind::Flag:
      return describeNumber(value, info.numberNames);
    case Kind::Address:
      return addressText(value);
  }
  return {};
}

}  // namespace

std::span<const SettingInfo> settingCatalogue() {
  return Catalogue;
}

std::string_view groupName(npa::Byte group) {
  switch (group) {
    case npa::GroupAdapter:
      return "adapter";
    case npa::GroupNetworkAddress:
      return "network address";
    case npa::GroupWireless:
      return "wireless network";
    case npa::Group8021x:
      return "802.1x";
    default:
      return {};
  }
}

std::string_view kindName(SettingInfo::Kind kind) {
  switch (kind) {
    case Kind::Text:
      return "text";
    case Kind::Number:
      return "number";
    case Kind::Flag:
      return "flag";
    case Kind::Address:
      return "address";
  }
  return {};
}

const SettingInfo* findSetting(npa::SettingKey key) {
  const auto* const found = std::ranges::find(Catalogue, key, &SettingInfo::key);
  return found == Catalogue.end() ? nullptr : found;
}

bool isSecret(npa::SettingKey key) {
  const SettingInfo* const info = findSetting(key);
  return info == nullptr || info->secret;
}

std::span<const npa::Byte> withoutTerminator(std::span<const npa::Byte> value) {
  while (!value.empty() && value.back() == 0) {
    value = value.first(value.size() - 1);
  }
  return value;
}

std::optional<std::size_t> numberOf(std::span<const npa::Byte> value) {
  constexpr std::size_t largest = 4;
  if (value.empty() || value.size() > largest) {
    return std::nullopt;
  }
  return util::bigEndian(value);
}

std::string addressText(std::span<const npa::Byte> value) {
  std::string text;
  for (const npa::Byte byte : value) {
    text.append(text.empty() ? "" : ".").append(std::to_string(byte));
  }
  return text;
}

std::string describeSetting(npa::SettingKey key, std::span<const npa::Byte> value,
                            bool showSecrets) {
  const SettingInfo* const info = findSetting(key);
  std::string text;
  if (info == nullptr) {
    const std::array numbers = {key.group, key.object};
    text.append("object ").append(hexText(numbers));
  } else {
    text.append(info->name);
  }
  text.append(" = ");
  if (isSecret(key) && !showSecrets) {
    return text.append("(").append(std::to_string(value.size())).append(" bytes)");
  }
  return text.append(info == nullptr ? hexText(value) : describeValue(*info, value));
}

}  // namespace catalogue
