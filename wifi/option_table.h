#pragma once

#include <array>
#include <string_view>

#include "wifi/translation.h"

namespace wifi {

/// An option of the command line. The help, the manual page and the completions are made from these
/// rows.
struct OptionRow {
  std::string_view name;       ///< with its dashes
  std::string_view valueName;  ///< empty: the option has no value
  const char* help;            ///< a message to translate
};

/// The options of every command.
inline constexpr auto CommonOptions = std::to_array<OptionRow>({
    {"--json", "", messageId("print one JSON document instead of text")},
    {"--quiet", "", messageId("show no progress")},
    {"--verbose", "", messageId("show each packet on standard error, secrets masked")},
    {"--trace", "FILE", messageId("write each packet to FILE, secrets masked")},
});

/// The settings of `set`, in the order of the help text. `session::ProfileReader` knows what each
/// value means.
inline constexpr auto SettingOptions = std::to_array<OptionRow>({
    {"--ssid", "TEXT", messageId("name of the network, 1 to 32 bytes")},
    {"--security", "KIND", messageId("open, wep, wpa or 802.1x")},
    {"--mode", "MODE", messageId("infrastructure (default) or ad-hoc")},
    {"--channel", "NUMBER", messageId("1 to 11, only with ad-hoc")},
    {"--encryption", "KIND",
     messageId("auto (default), tkip, aes; with 802.1x also wep-dynamic, wep-static")},
    {"--wep-auth", "KIND", messageId("open (default) or shared")},
    {"--user", "NAME", messageId("user name of 802.1x, at most 31 bytes")},
    {"--eap", "LIST", messageId("methods of 802.1x: md5, mschapv2, leap, peap, tls, ttls")},
    {"--inner", "METHOD", messageId("inner method: chap, mschap, mschapv2 or pap")},
    {"--password-from", "SOURCE",
     messageId("where the secret comes from: prompt, file:PATH or fd:NUMBER")},
});

/// The other options of `set`.
inline constexpr auto SetOptions = std::to_array<OptionRow>({
    {"--from", "FILE", messageId("read settings from the key=value lines of FILE")},
    {"--wait", "SECONDS", messageId("confirm for at most so long (60); 0: accepted is enough")},
    {"--dry-run", "", messageId("show what would be sent, and open nothing")},
    {"--force", "", messageId("store even if the printer is in that network already")},
});

/// The subject of a certificate request.
inline constexpr auto SubjectOptions = std::to_array<OptionRow>({
    {"--common-name", "TEXT", messageId("common name of the subject")},
    {"--organization", "TEXT", messageId("organization")},
    {"--unit", "TEXT", messageId("organizational unit")},
    {"--country", "XX", messageId("country, two letters")},
    {"--state", "TEXT", messageId("state or province")},
    {"--city", "TEXT", messageId("city")},
    {"--alternative-name", "TEXT", messageId("alternative name")},
});

}  // namespace wifi
