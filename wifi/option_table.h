#pragma once

#include <array>
#include <span>
#include <string_view>

#include "session/translatable.h"

namespace wifi {

using session::translatable;

/// An option of the command line. The help, the manual page and the completions are made from these
/// rows.
struct OptionRow {
  std::string_view name;       ///< with its dashes
  std::string_view valueName;  ///< empty: the option has no value
  const char* help;            ///< a message to translate
};

/// The options of the program. `--help` is also an option of every command.
inline constexpr auto ProgramOptions = std::to_array<OptionRow>({
    {"--help", "", translatable("print a help text")},
    {"--version", "", translatable("print the version")},
});

/// The options of every command.
inline constexpr auto CommonOptions = std::to_array<OptionRow>({
    {"--json", "", translatable("print one JSON document instead of text")},
    {"--quiet", "", translatable("show no progress")},
    {"--verbose", "", translatable("show each packet on standard error, secrets masked")},
    {"--trace", "FILE", translatable("write each packet to FILE, secrets masked")},
});

/// The options of the commands that take several printers.
inline constexpr auto SeveralOptions = std::to_array<OptionRow>({
    {"--all", "", translatable("every printer on this machine")},
    {"--json-lines", "", translatable("print one JSON document for each printer, as it is done")},
});

/// The settings of `set`, in the order of the help text. `session::ProfileReader` knows what each
/// value means.
inline constexpr auto SettingOptions = std::to_array<OptionRow>({
    {"--ssid", "TEXT", translatable("name of the network, 1 to 32 bytes")},
    {"--security", "KIND", translatable("open, wep, wpa or 802.1x")},
    {"--mode", "MODE", translatable("infrastructure (default) or ad-hoc")},
    {"--channel", "NUMBER", translatable("1 to 11, only with ad-hoc")},
    {"--encryption", "KIND",
     translatable("auto (default), tkip, aes; with 802.1x also wep-dynamic, wep-static")},
    {"--wep-auth", "KIND", translatable("open (default) or shared")},
    {"--user", "NAME", translatable("user name of 802.1x, at most 31 bytes")},
    {"--eap", "LIST", translatable("methods of 802.1x: md5, mschapv2, leap, peap, tls, ttls")},
    {"--inner", "METHOD", translatable("inner method: chap, mschap, mschapv2 or pap")},
    {"--password-from", "SOURCE",
     translatable("where the secret comes from: prompt, file:PATH or fd:NUMBER")},
});

/// Options of the commands that take settings.
inline constexpr auto ProfileOptions = std::to_array<OptionRow>({
    {"--from", "FILE", translatable("read settings from the key=value lines of FILE")},
    {"--wait", "SECONDS", translatable("confirm for at most so long (60); 0: accepted is enough")},
});

/// The other options of `set`.
inline constexpr auto SetOptions = std::to_array<OptionRow>({
    {"--dry-run", "", translatable("show what would be sent, and open nothing")},
    {"--force", "", translatable("store even if the printer is in that network already")},
});

/// The other options of `station`.
inline constexpr auto StationOptions = std::to_array<OptionRow>({
    {"--force", "", translatable("store also in a printer that is done or in that network")},
    {"--json-lines", "", translatable("print one JSON document for each printer, as it is done")},
});

/// The subject of a certificate request.
inline constexpr auto SubjectOptions = std::to_array<OptionRow>({
    {"--common-name", "TEXT", translatable("common name of the subject")},
    {"--organization", "TEXT", translatable("organization")},
    {"--unit", "TEXT", translatable("organizational unit")},
    {"--country", "XX", translatable("country, two letters")},
    {"--state", "TEXT", translatable("state or province")},
    {"--city", "TEXT", translatable("city")},
    {"--alternative-name", "TEXT", translatable("alternative name")},
});

/// The other options of `cert request`.
inline constexpr auto RequestOptions = std::to_array<OptionRow>({
    {"--output", "FILE", translatable("file for the request, which must not exist")},
    {"--name", "NAME", translatable("name of the certificate in the printer")},
    {"--replace", "", translatable("replace a certificate of the same name without asking")},
});

/// The options of `cert install`.
inline constexpr auto InstallOptions = std::to_array<OptionRow>({
    {"--file", "FILE", translatable("certificate in PEM form")},
    {"--name", "NAME", translatable("name of the certificate in the printer")},
    {"--replace", "", translatable("replace a certificate of the same name without asking")},
});

/// The options of `cert install-ca`. The printer names the certificate of an authority itself.
inline constexpr auto InstallCaOptions = std::to_array<OptionRow>({
    {"--file", "FILE", translatable("certificate in PEM form")},
    {"--replace", "", translatable("replace a certificate of the same name without asking")},
});

/// The option of `cert delete` and `cert delete-ca`.
inline constexpr auto DeleteOptions = std::to_array<OptionRow>({
    {"--name", "NAME", translatable("name as \"cert list\" shows it")},
});

/// A command: its name of one or two words, and its options without `CommonOptions`.
struct CommandRow {
  std::string_view name;
  const char* help;  ///< a message to translate
  std::string_view arguments = "[PRINTER]";
  std::array<std::span<const OptionRow>, 4> options = {};
};

/// The commands. The row of `cert` precedes the rows of its commands.
inline constexpr auto CommandRows = std::to_array<CommandRow>({
    {"list", translatable("list the printers on this machine"), ""},
    {"status", translatable("show what the adapter reports"), "[PRINTER...]", {SeveralOptions}},
    {"set",
     translatable("check settings, store them and confirm that the printer joined"),
     "[PRINTER...] SETTINGS",
     {SettingOptions, ProfileOptions, SetOptions, SeveralOptions}},
    {"station",
     translatable("set up each printer that is plugged in, until Ctrl-C"),
     "SETTINGS",
     {SettingOptions, ProfileOptions, StationOptions}},
    {"reset", translatable("reset the adapter")},
    {"cert", translatable("manage the printer's certificates"), "COMMAND"},
    {"cert list", translatable("list the certificates")},
    {"cert request",
     translatable("make a key in the printer and write the certificate request to a file"),
     "[PRINTER] --output=FILE SUBJECT",
     {SubjectOptions, RequestOptions}},
    {"cert install-ca",
     translatable("install the certificate of an authority"),
     "[PRINTER] --file=FILE",
     {InstallCaOptions}},
    {"cert install",
     translatable("install the printer's signed certificate"),
     "[PRINTER] --file=FILE",
     {InstallOptions}},
    {"cert delete",
     translatable("delete one of the printer's own certificates"),
     "[PRINTER] --name=NAME",
     {DeleteOptions}},
    {"cert delete-ca",
     translatable("delete the certificate of an authority"),
     "[PRINTER] --name=NAME",
     {DeleteOptions}},
});

}  // namespace wifi
