// The questions about the network.

#include "wifi/guide_settings.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <iterator>
#include <optional>
#include <vector>

#include "session/translatable.h"
#include "util/format.h"
#include "wifi/networks.h"
#include "wifi/questions.h"
#include "wifi/secret_input.h"
#include "wifi/shown_text.h"
#include "wifi/translation.h"

namespace wifi {

namespace {

using session::ProfileReader;
using session::Security;
using session::translatable;

/// One choice of the security: the value of the setting `security`, and the text of the choice.
struct SecurityRow {
  Security security;
  const char* word;
  const char* text;
};
constexpr auto Securities = std::to_array<SecurityRow>({
    {Security::Wpa, "wpa", translatable("WPA or WPA2 with a passphrase")},
    {Security::Enterprise, "802.1x", translatable("WPA or WPA2 with user and password (802.1x)")},
    {Security::Wep, "wep", translatable("WEP, which is old and easy to break")},
    {Security::Open, "open", translatable("open, without a passphrase")},
});

/// One choice of 802.1x methods. If `eap` is empty, the guide asks for the methods. If only `inner`
/// is empty, there is no inner method.
struct MethodRow {
  const char* eap;
  const char* inner;
  const char* text;
};
constexpr auto Methods = std::to_array<MethodRow>({
    {"peap", "mschapv2", translatable("PEAP with MSCHAPv2, the most common")},
    {"ttls", "mschapv2", translatable("TTLS with MSCHAPv2")},
    {"ttls", "pap", translatable("TTLS with PAP")},
    {"leap", "", translatable("LEAP")},
    {"tls", "", translatable("TLS, with a certificate in the printer and no password")},
    {"", "", translatable("other methods")},
});

template <typename Rows>
std::vector<std::string> textsOf(const Rows& rows) {
  std::vector<std::string> texts;
  std::ranges::transform(rows, std::back_inserter(texts),
                         [](const auto& row) { return std::string(tr(row.text)); });
  return texts;
}

std::string expectedText(const char* expected) {
  // TRANSLATORS: what follows is what is allowed, such as "a number from 1 to 11".
  return util::formatted(tr("Expected %s."), tr(expected));
}

/// Asks for a setting until its value is allowed. If `mayBeEmpty`, an empty answer is allowed and
/// sets nothing.
std::string askForSetting(ProfileReader& reader, const char* key, const char* question,
                          bool mayBeEmpty = false) {
  return ask(question, [&](const std::string& answer) {
    if (answer.empty() && mayBeEmpty) {
      return std::string();
    }
    try {
      reader.set(key, answer, key);
      return std::string();
    } catch (const session::ProfileError& error) {
      return expectedText(error.expected);
    }
  });
}

std::string networkText(const Network& network) {
  return network.isOwn
             ? util::formatted(tr("%s (this computer's network)"), shown(network.ssid).c_str())
             : shown(network.ssid);
}

/// Asks for the network's name. Returns what is known about that network.
Network askForName(ProfileReader& reader, const std::vector<Network>& networks) {
  if (!networks.empty()) {
    std::vector<std::string> items;
    std::ranges::transform(networks, std::back_inserter(items), networkText);
    items.emplace_back(tr("another name"));
    const std::size_t chosen =
        askForChoice(tr("Which network?"), items,
                     networks.front().isOwn ? std::optional<std::size_t>(0) : std::nullopt);
    if (chosen < networks.size()) {
      reader.set("ssid", networks[chosen].ssid, "ssid");
      return networks[chosen];
    }
  }
  const std::string name = askForSetting(reader, "ssid", tr("Name of the network: "));
  const auto known = std::ranges::find(networks, name, &Network::ssid);
  return known != networks.end() ? *known : Network{.ssid = name, .security = std::nullopt};
}

/// Asks until the network is one that the adapter can join.
Network askForNetwork(ProfileReader& reader) {
  const std::vector<Network> networks = visibleNetworks();
  for (;;) {
    Network network = askForName(reader, networks);
    if (!network.needsWpa3) {
      return network;
    }
    say(util::formatted(
        tr("\"%s\" accepts only WPA3, which the printer's adapter does not support. Let its access "
           "point accept WPA2 too, or take another network."),
        shown(network.ssid).c_str()));
  }
}

/// Asks for the security, and returns it.
Security askForSecurity(ProfileReader& reader, const Network& network) {
  std::optional<std::size_t> usual;
  if (network.security) {
    const auto* const row =
        std::ranges::find(Securities, *network.security, &SecurityRow::security);
    usual = static_cast<std::size_t>(std::distance(Securities.begin(), row));
  }
  const std::size_t chosen = askForChoice(tr("Which security?"), textsOf(Securities), usual);
  reader.set("security", Securities[chosen].word, "security");
  return Securities[chosen].security;
}

void askForMethods(ProfileReader& reader) {
  askForSetting(reader, "user", tr("User: "));
  const MethodRow& row = Methods[askForChoice(tr("Which methods?"), textsOf(Methods), 0)];
  if (*row.eap != '\0') {
    reader.set("eap", row.eap, "eap");
    if (*row.inner != '\0') {
      reader.set("inner", row.inner, "inner");
    }
    return;
  }
  askForSetting(reader, "eap", tr("Methods (md5, mschapv2, leap, peap, tls, ttls): "));
  const std::vector<std::string> methods = reader.finish().eapMethods;
  if (std::ranges::count(methods, "peap") + std::ranges::count(methods, "ttls") > 0) {
    askForSetting(reader, "inner", tr("Inner method (chap, mschap, mschapv2, pap) [none]: "), true);
  }
}

session::Secret askForFittingSecret(const session::Profile& profile) {
  for (;;) {
    try {
      session::Secret secret = askForSecret(secretQuestion(profile.security));
      const char* const expected = session::checkSecret(profile, secret.text());
      if (expected == nullptr) {
        return secret;
      }
      say(expectedText(expected));
    } catch (const EndOfInput&) {
      throw;
    } catch (const SecretError& error) {
      say(error.what());
    }
  }
}

}  // namespace

std::unique_ptr<session::Profile> askForProfile() {
  ProfileReader reader;
  if (askForSecurity(reader, askForNetwork(reader)) == Security::Enterprise) {
    askForMethods(reader);
  }
  // The profile is in heap memory, because the program clears each block of heap memory before it
  // frees the block.
  auto profile = std::make_unique<session::Profile>(reader.finish());
  if (session::needsSecret(*profile)) {
    profile->secret = askForFittingSecret(*profile);
  }
  return profile;
}

std::string securityText(session::Security security) {
  return tr(std::ranges::find(Securities, security, &SecurityRow::security)->text);
}

}  // namespace wifi
