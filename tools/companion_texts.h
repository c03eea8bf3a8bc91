#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "catalogue/option_parser.h"
#include "tools/scdoc.h"
#include "tools/shell_rows.h"
#include "tools/texts.h"

/// Texts of zvkprinter and zvknpa, from the tables that describe their command lines. Both programs
/// have tables of `catalogue::Option`. zvkprinter also has a table of `catalogue::Command`.
namespace tools {

/// Returns the description of an option or command for the manual page. Names of values in `usages`
/// are underlined.
inline std::string scdocDescription(std::string_view help, std::string_view details,
                                    std::string_view usages) {
  const std::string sentence = scdocSentence(help, valueNames(usages));
  return sentence + (details.empty() ? "" : " ") + std::string(details);
}

/// Returns the options for the manual page, each group under its heading.
template <typename Options>
std::string optionEntries(std::span<const catalogue::OptionGroup<Options>> groups) {
  std::string text;
  for (const catalogue::OptionGroup<Options>& group : groups) {
    // A single group needs no heading below "OPTIONS".
    text.append(groups.size() > 1 ? "## " + scdocText(group.title) + "\n\n" : "");
    for (const catalogue::Option<Options>& option : group.options) {
      const std::string usage = catalogue::optionText(option);
      const std::string value = usage.substr(option.name.size());
      const std::string other = option.shortName.empty() ? "" : ", " + bold(option.shortName);
      text.append(scdocEntry(bold(std::string(option.name) + (value.empty() ? "" : "=")) +
                                 scdocUsage(std::string_view(value).substr(value.empty() ? 0 : 1)) +
                                 other,
                             scdocDescription(option.help, option.details, usage)));
      text.append("\n");
    }
  }
  return text.substr(0, text.size() - 1);
}

/// Adds texts about the options of a program: "PROGRAM options" for the manual page, and "PROGRAM
/// option rows" and "PROGRAM value rows" for the completions. Also appends the names of the options
/// to "PROGRAM names".
template <typename Options>
void addOptionTexts(Texts& texts, const std::string& program,
                    std::span<const catalogue::OptionGroup<Options>> groups) {
  using catalogue::ValueKind;
  std::vector<std::string> options;
  std::vector<std::string> values;
  std::string names;
  for (const catalogue::OptionGroup<Options>& group : groups) {
    for (const catalogue::Option<Options>& option : group.options) {
      const bool takesValue = !catalogue::valueText(option.valueName, option.words).empty();
      const std::string name = std::string(option.name) + (takesValue ? "=" : "");
      options.push_back(name + " " + std::string(option.help));
      names.append(name).append("\n");
      names.append(option.shortName).append(option.shortName.empty() ? "" : "\n");
      if (!option.words.empty()) {
        values.push_back(valueRow(option.name, {}, "words", option.words));
      } else if (option.kind == ValueKind::File || option.kind == ValueKind::Folder) {
        values.push_back(
            valueRow(option.name, {}, option.kind == ValueKind::File ? "file" : "folder", {}));
      }
    }
  }
  texts[program + " options"] = optionEntries(groups);
  texts[program + " names"].append(names);
  texts[program + " option rows"] = shellRows(options);
  texts[program + " value rows"] = shellRows(values);
}

/// Adds texts about the commands of a program: "PROGRAM synopsis" and "PROGRAM commands" for the
/// manual page, and "PROGRAM command rows" for the completions. Also appends the names of the
/// commands to "PROGRAM names".
template <typename Options>
void addCommandTexts(Texts& texts, const std::string& program,
                     std::span<const catalogue::Command<Options>> commands) {
  std::string synopsis;
  std::string entries;
  std::string names;
  std::vector<std::string> rows;
  for (const catalogue::Command<Options>& command : commands) {
    std::string term = bold(command.name);
    names.append(command.name).append("\n");
    for (const std::string_view other : command.otherNames) {
      term.append(other.empty() ? "" : ", " + bold(other));
      names.append(other).append(other.empty() ? "" : "\n");
    }
    std::string allUsages;
    for (std::size_t i = 0; i < command.usages.size(); ++i) {
      const std::string_view usage = command.usages[i];
      allUsages.append(usage).append(" ");
      if (i == 0 || !usage.empty()) {
        synopsis.append(synopsis.empty() ? "" : "++\n").append(bold(program)).append(" ");
        synopsis.append(bold(command.name)).append(usage.empty() ? "" : " ");
        synopsis.append(scdocUsage(usage));
      }
    }
    entries.append(entries.empty() ? "" : "\n")
        .append(scdocEntry(term, scdocDescription(command.help, command.details, allUsages)));
    rows.push_back(std::string(command.name) + " " + std::string(command.help));
  }
  texts[program + " synopsis"] = synopsis;
  texts[program + " commands"] = entries;
  texts[program + " names"].append(names);
  texts[program + " command rows"] = shellRows(rows);
}

}  // namespace tools
