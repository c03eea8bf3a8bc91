// The network block for each code of the setting "security". authentication_block.cpp has the part
// for 802.1x.

#include "emulator/radio/radio_configuration.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <string_view>

#include "catalogue/hex_text.h"
#include "emulator/radio/network_block.h"

namespace emulator {

namespace {

namespace settings = npa::settings;

constexpr std::size_t LongestSsid = 32;
constexpr std::size_t ShortestPassphrase = 8;
constexpr std::size_t HexKeySize = 64;
constexpr std::size_t UsualChannel = 6;
constexpr std::size_t LargestChannel = 11;
constexpr std::size_t AdHocMode = 1;

/// The codes of the setting "security".
enum class Security { None = 0, Wep = 1, PreSharedKey = 2, Authentication = 3, Wpa2Only = 4 };

/// The sizes of a WEP key in characters, and whether the characters are hex digits.
struct WepKeyRow {
  std::size_t size;
  bool isHex;
};
constexpr std::array WepKeySizes = {WepKeyRow{5, false}, WepKeyRow{10, true}, WepKeyRow{13, false},
                                    WepKeyRow{26, true}};
constexpr std::array WepKeys = {settings::WepKey1, settings::WepKey2, settings::WepKey3,
                                settings::WepKey4};

/// The values of auth_alg. The index is the code of the setting "WEP authentication". With "auto"
/// the radio tries the shared key if the access point refuses an open authentication.
constexpr std::array<std::string_view, 3> WepAuthWords = {"OPEN SHARED", "OPEN", "SHARED"};

bool isHex(std::string_view text) {
  return text.find_first_not_of("0123456789abcdefABCDEF") == std::string_view::npos;
}

std::string frequencyOf(std::size_t channel) {
  constexpr std::size_t base = 2407;
  constexpr std::size_t step = 5;
  return std::to_string(base + step * channel);
}

/// Returns the frequencies of the channels 1 to 11, the only ones that the setting "channel" knows.
std::string allFrequencies() {
  std::string list;
  for (std::size_t channel = 1; channel <= LargestChannel; ++channel) {
    list.append(list.empty() ? "" : " ").append(frequencyOf(channel));
  }
  return list;
}

void addNetwork(NetworkBlock& block, const SettingsStore& store, bool isAdHoc) {
  const std::string ssid = store.text(settings::Ssid);
  if (ssid.empty()) {
    throw UnusableError{RadioProblem::SsidMissing};
  }
  if (ssid.size() > LongestSsid) {
    throw UnusableError{RadioProblem::SsidTooLong};
  }
  block.addBytes("ssid", ssid);
  if (!isAdHoc) {
    block.add("scan_ssid", "1");
    block.add("scan_freq", allFrequencies());
    block.add("freq_list", allFrequencies());
    return;
  }
  const std::size_t channel = store.number(settings::Channel).value_or(UsualChannel);
  if (channel < 1 || channel > LargestChannel) {
    throw UnusableError{RadioProblem::ChannelOutOfRange};
  }
  block.add("mode", "1");
  block.add("frequency", frequencyOf(channel));
}

void addPassphrase(NetworkBlock& block, const std::string& key) {
  if (key.size() < ShortestPassphrase) {
    throw UnusableError{RadioProblem::PassphraseTooShort};
  }
  if (key.size() > HexKeySize) {
    throw UnusableError{RadioProblem::PassphraseTooLong};
  }
  if (key.size() == HexKeySize) {
    if (!isHex(key)) {
      throw UnusableError{RadioProblem::KeyNotHex};
    }
    block.add("psk", key);
    return;
  }
  const bool hasControl = std::ranges::any_of(key, [](char character) {
    return static_cast<unsigned char>(character) < ' ' || character == '\x7F';
  });
  if (hasControl) {
    throw UnusableError{RadioProblem::PassphraseControlCharacter};
  }
  // wpa_supplicant reads up to the last quotation mark of the line, so quotation marks in the key
  // need no escape.
  block.add("psk", "\"" + key + "\"");
}

void addPreSharedKey(NetworkBlock& block, const SettingsStore& store, bool isAdHoc,
                     bool isWpa2Only) {
  std::optional<Encryption> encryption = storedEncryption(store);
  if (encryption == Encryption::WepDynamic || encryption == Encryption::WepStatic) {
    throw UnusableError{RadioProblem::WepEncryptionWithKey};
  }
  if (isAdHoc) {
    if (encryption == Encryption::Tkip) {
      throw UnusableError{RadioProblem::AdHocWithTkip};
    }
    encryption = Encryption::Aes;
  }
  block.add("key_mgmt", "WPA-PSK");
  block.add("proto", isAdHoc || isWpa2Only ? "RSN" : "WPA RSN");
  if (isAdHoc) {
    block.add("pairwise", "CCMP");
    block.add("group", "CCMP");
  } else {
    addCiphers(block, encryption);
  }
  addPassphrase(block, store.text(settings::PreSharedKey));
}

void addWep(NetworkBlock& block, const SettingsStore& store) {
  const std::size_t auth = store.number(settings::WepAuth).value_or(0);
  if (auth >= WepAuthWords.size()) {
    throw UnusableError{RadioProblem::WepAuthUnknown};
  }
  block.add("key_mgmt", "NONE");
  block.add("auth_alg", WepAuthWords.at(auth));
  addWepKeys(block, store);
}

void addSecurity(NetworkBlock& block, RadioConfiguration& configuration, const SettingsStore& store,
                 const CertificateStore& certificates, const std::string& folder) {
  const bool isAdHoc = store.number(settings::Mode) == AdHocMode;
  const auto security = static_cast<Security>(store.number(settings::Security).value_or(0));
  switch (security) {
    case Security::None:
      block.add("key_mgmt", "NONE");
      return;
    case Security::Wep:
      addWep(block, store);
      return;
    case Security::PreSharedKey:
    case Security::Wpa2Only:
      addPreSharedKey(block, store, isAdHoc, security == Security::Wpa2Only);
      return;
    case Security::Authentication:
      if (isAdHoc) {
        throw UnusableError{RadioProblem::AdHocWithServer};
      }
      addAuthentication(block, configuration, store, certificates, folder);
      return;
  }
  throw UnusableError{RadioProblem::SecurityUnknown};
}

}  // namespace

void NetworkBlock::add(std::string_view name, std::string_view value) {
  m_Lines.append("  ").append(name).append("=").append(value).append("\n");
}

void NetworkBlock::addBytes(std::string_view name, std::string_view bytes) {
  constexpr std::string_view digits = "0123456789abcdef";
  std::string hex;
  for (const char character : bytes) {
    const auto byte = static_cast<unsigned char>(character);
    hex.push_back(digits[byte / digits.size()]);
    hex.push_back(digits[byte % digits.size()]);
  }
  add(name, hex);
}

std::optional<Encryption> storedEncryption(const SettingsStore& store) {
  if (!store.holds(settings::Encryption)) {
    return std::nullopt;
  }
  const std::optional<std::size_t> code = store.number(settings::Encryption);
  if (!code || *code > static_cast<std::size_t>(Encryption::Aes)) {
    throw UnusableError{RadioProblem::EncryptionUnknown};
  }
  return static_cast<Encryption>(*code);
}

void addCiphers(NetworkBlock& block, std::optional<Encryption> encryption) {
  const bool isTkip = encryption == Encryption::Tkip;
  block.add("pairwise", isTkip ? "TKIP" : encryption == Encryption::Aes ? "CCMP" : "CCMP TKIP");
  // An access point that accepts both ciphers encrypts its broadcasts with TKIP.
  block.add("group", isTkip ? "TKIP" : "CCMP TKIP");
}

void addWepKeys(NetworkBlock& block, const SettingsStore& store) {
  for (std::size_t index = 0; index < WepKeys.size(); ++index) {
    const std::string key = store.text(WepKeys.at(index));
    if (key.empty()) {
      continue;
    }
    const auto* const row = std::ranges::find(WepKeySizes, key.size(), &WepKeyRow::size);
    if (row == WepKeySizes.end()) {
      throw UnusableError{RadioProblem::WepKeySize};
    }
    if (row->isHex && !isHex(key)) {
      throw UnusableError{RadioProblem::WepKeyNotHex};
    }
    const std::string name = "wep_key" + std::to_string(index);
    if (row->isHex) {
      block.add(name, key);
    } else {
      block.addBytes(name, key);
    }
  }
  const std::size_t transmit = store.number(settings::WepTransmit).value_or(1);
  if (transmit < 1 || transmit > WepKeys.size()) {
    throw UnusableError{RadioProblem::TransmitKeyOutOfRange};
  }
  if (store.text(WepKeys.at(transmit - 1)).empty()) {
    throw UnusableError{RadioProblem::TransmitKeyEmpty};
  }
  block.add("wep_tx_keyidx", std::to_string(transmit - 1));
}

RadioPlan planRadio(const SettingsStore& store, const CertificateStore& certificates,
                    const std::string& folder) {
  try {
    RadioConfiguration configuration;
    NetworkBlock block;
    addNetwork(block, store, store.number(settings::Mode) == AdHocMode);
    addSecurity(block, configuration, store, certificates, folder);
    configuration.files[radio_files::Main] = "ctrl_interface=" + folder + "/" +
                                             radio_files::Control + "\nfast_reauth=0\n" +
                                             block.text();
    return configuration;
  } catch (const UnusableError& error) {
    return error.problem;
  }
}

}  // namespace emulator
