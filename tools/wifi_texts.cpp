// The texts of zvkwifi.

#include <algorithm>
#include <array>
#include <utility>

#include "session/setting_rules.h"
#include "tools/scdoc.h"
#include "tools/shell_rows.h"
#include "tools/texts.h"
#include "wifi/option_table.h"

namespace tools {

namespace {

using wifi::CommandRow;
using wifi::OptionRow;

constexpr std::string_view CertPrefix = "cert ";

/// Options whose values have a special kind in the completions: "network" offers names of networks,
/// "source" offers the forms of a secret's source, and "list" allows several words.
constexpr auto ValueKinds = std::to_array<std::pair<std::string_view, std::string_view>>({
    {"--ssid", "network"},
    {"--password-from", "source"},
    {"--eap", "list"},
});

std::string manualEntry(const OptionRow& option) {
  const std::string term = option.valueName.empty() ? bold(option.name)
                                                    : bold(std::string(option.name) + "=") +
                                                          scdocUsage(option.valueName);
  // A sentence must not begin with a word that the user types, because its first letter would
  // become a capital.
  const std::string_view help = option.help;
  const std::string_view first = help.substr(0, help.find_first_of(", "));
  const session::SettingRule* const rule = session::findRule(option.name.substr(2));
  const bool startsWithWord = rule != nullptr && std::ranges::count(rule->words, first) > 0;
  const std::string sentence =
      (startsWithWord ? std::string(option.valueName) + " is " : "") + std::string(help);
  return scdocEntry(term, scdocSentence(sentence, valueNames(option.valueName)));
}

std::string manualEntries(std::span<const OptionRow> options) {
  std::string text;
  for (const OptionRow& option : options) {
    text.append(text.empty() ? "" : "\n").append(manualEntry(option));
  }
  return text;
}

std::string completed(const OptionRow& option) {
  return std::string(option.name) + (option.valueName.empty() ? "" : "=");
}

/// Returns the row about the values of an option, or an empty text if there are no suggestions.
std::string valuesOf(const OptionRow& option) {
  if (option.valueName == "FILE") {
    return valueRow(option.name, {}, "file", {});
  }
  const session::SettingRule* const rule = session::findRule(option.name.substr(2));
  const auto words = rule == nullptr ? std::span<const std::string_view>() : rule->words;
  const auto* const kind =
      std::ranges::find(ValueKinds, option.name, &decltype(ValueKinds)::value_type::first);
  if (kind != ValueKinds.end()) {
    return valueRow(option.name, {}, kind->second, words);
  }
  return words.empty() ? std::string() : valueRow(option.name, {}, "words", words);
}

/// The rows of the completions, and the names for the test of the manual page.
struct Rows {
  std::vector<std::string> options;
  std::vector<std::string> values;
  std::string names;

  /// Adds the options of a command. "any" stands for all commands, and "none" for the program
  /// without a command.
  void add(std::string_view command, std::span<const OptionRow> added) {
    for (const OptionRow& option : added) {
      options.push_back(std::string(command) + " " + completed(option) + " " + option.help);
      if (const std::string row = valuesOf(option);
          !row.empty() && std::ranges::count(values, row) == 0) {
        values.push_back(row);
      }
      names.append(completed(option)).append("\n");
    }
  }
};

}  // namespace

void addWifiTexts(Texts& texts) {
  Rows rows;
  rows.add("any", std::span(wifi::ProgramOptions).first(1));
  rows.add("none", std::span(wifi::ProgramOptions).subspan(1));
  rows.add("any", wifi::CommonOptions);

  std::string entries;
  std::vector<std::string> commands;
  std::vector<std::string> certCommands;
  for (const CommandRow& command : wifi::CommandRows) {
    const bool isCert = command.name.starts_with(CertPrefix);
    const std::string_view word = isCert ? command.name.substr(CertPrefix.size()) : command.name;
    (isCert ? certCommands : commands).push_back(std::string(word) + " " + command.help);
    if (command.name != "cert") {
      entries.append(entries.empty() ? "" : "\n")
          .append(scdocEntry(bold(command.name) + (command.arguments.empty() ? "" : " ") +
                                 scdocUsage(command.arguments),
                             scdocSentence(command.help, {})));
      rows.names.append(command.name).append("\n");
    }
    for (const auto& options : command.options) {
      rows.add((isCert ? "cert-" : "") + std::string(word), options);
    }
  }
  texts["zvkwifi commands"] = entries;
  texts["zvkwifi program options"] = manualEntries(wifi::ProgramOptions);
  texts["zvkwifi common options"] = manualEntries(wifi::CommonOptions);
  texts["zvkwifi setting options"] = manualEntries(wifi::SettingOptions);
  texts["zvkwifi set options"] =
      manualEntries(wifi::ProfileOptions) + "\n" + manualEntries(wifi::SetOptions);
  texts["zvkwifi station options"] = manualEntries(wifi::StationOptions);
  texts["zvkwifi several options"] = manualEntries(wifi::SeveralOptions);
  texts["zvkwifi subject options"] = manualEntries(wifi::SubjectOptions);
  texts["zvkwifi cert options"] = manualEntries(wifi::RequestOptions) + "\n" +
                                  manualEntries(wifi::InstallOptions) + "\n" +
                                  manualEntries(wifi::DeleteOptions);
  texts["zvkwifi names"] = rows.names;
  texts["zvkwifi command rows"] = shellRows(commands);
  texts["zvkwifi cert rows"] = shellRows(certCommands);
  texts["zvkwifi option rows"] = shellRows(rows.options);
  texts["zvkwifi value rows"] = shellRows(rows.values);
}

}  // namespace tools
