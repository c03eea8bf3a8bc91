// The texts of zvkconfig. Its command line has its own tables of switches and options.

#include <algorithm>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

#include "catalogue/option_parser.h"
#include "cli/command_table.h"
#include "settings/option_table.h"
#include "tools/scdoc.h"
#include "tools/shell_rows.h"
#include "tools/texts.h"

namespace tools {

namespace {

using Input = CommandMode::Input;
using Kind = SettingOption::Kind;
using Section = SettingOption::Section;
using Names = std::vector<std::string_view>;

/// Returns the names in bold. The separators are those of `catalogue::joined`.
std::string joinedBold(const Names& names, std::string_view separator, std::string_view last) {
  std::vector<std::string> marked;
  std::ranges::transform(names, std::back_inserter(marked), bold);
  return catalogue::joined(Names(marked.begin(), marked.end()), separator, last);
}

/// Returns the switches of one form of the command line, except "-h", which takes no arguments.
Names switchesWith(Input input) {
  Names names;
  for (const CommandRow& row : CommandTable) {
    if (row.mode.input == input && row.mode.worker != CommandMode::Worker::Help) {
      names.push_back(row.mode.name);
    }
  }
  return names;
}

/// Returns the switches whose operation may run a second time, with bare packets. The program
/// repeats an operation only if its result is -1, which is the exit status 255.
Names retryingSwitches() {
  Names names;
  for (const CommandRow& row : CommandTable) {
    if (row.mode.retriesBare && row.statuses.back().highest == 255) {
      names.push_back(row.mode.name);
    }
  }
  return names;
}

/// Returns a sentence about the exit statuses of a command.
std::string statusText(std::span<const ExitStatus> statuses) {
  std::string text = "Exit status ";
  for (const ExitStatus& status : statuses) {
    text.append(status.lowest == statuses.front().lowest ? "" : "; ");
    text.append(std::to_string(status.lowest));
    if (status.highest > status.lowest) {
      text.append(" to ").append(std::to_string(status.highest));
    }
    text.append(status.meaning.empty() ? "" : ": ").append(scdocText(status.meaning));
  }
  return text.append(".");
}

/// Returns the commands for the manual page.
std::string commandEntries() {
  std::string text;
  for (const CommandRow& row : CommandTable) {
    const bool takesFile = row.mode.input == Input::NpaFile;
    std::string description = scdocSentence(row.help, {});
    description.append(row.details.empty() ? "" : " ").append(row.details);
    text.append(text.empty() ? "" : "\n")
        .append(scdocEntry(bold(row.mode.name) + (takesFile ? " *-file* _FILE_ _DEVICE_" : ""),
                           description + " " + statusText(row.statuses)));
  }
  return text;
}

/// Returns the allowed words of an option, such as "*None* or *WEP* with *-c*; *OPEN* with *-ca*",
/// or an empty text if any text is allowed.
std::string wordsText(const SettingOption& option) {
  std::string text;
  for (const SettingOption::Words& words : option.words) {
    if (!words.list.empty()) {
      text.append(text.empty() ? "" : "; ").append(boldWords(words.list));
      text.append(words.command.empty() ? "" : " with " + bold(words.command));
    }
  }
  return text + (option.kind == Kind::WordList ? ", several with \"|\" between them" : "");
}

std::string optionEntry(const SettingOption& option) {
  const std::string help(option.help);
  std::string sentence = scdocSentence(help, {});
  if (const std::string words = wordsText(option); !words.empty()) {
    sentence.back() = ':';
    sentence.append(" ").append(words).append(".");
  }
  if (!option.initial.empty()) {
    sentence.append(" The default is ").append(bold(option.initial)).append(".");
  }
  sentence.append(option.details.empty() ? "" : " ").append(option.details);
  return scdocEntry(bold(option.key) + scdocUsage(option.valueName), sentence);
}

/// Returns the options of one section of the manual page.
std::string optionEntries(Section section) {
  std::string text;
  for (const SettingOption& option : SettingOptions) {
    if (option.section == section) {
      text.append(text.empty() ? "" : "\n").append(optionEntry(option));
    }
  }
  return text;
}

/// Returns the kind of a value for the completions, or an empty text for the kind `Text`.
std::string_view kindText(Kind kind) {
  switch (kind) {
    case Kind::Text:
      break;
    case Kind::Word:
      return "words";
    case Kind::WordList:
      return "list";
    case Kind::File:
      return "file";
  }
  return {};
}

/// Returns the rows of values for the completions.
std::vector<std::string> valueRows() {
  std::vector<std::string> rows;
  for (const SettingOption& option : SettingOptions) {
    const std::string_view name = option.key.substr(0, option.key.size() - 1);
    for (const SettingOption::Words& words : option.words) {
      if (!words.list.empty()) {
        rows.push_back(valueRow(name, words.command, kindText(option.kind), words.list));
      }
    }
    if (option.kind == Kind::File) {
      rows.push_back(valueRow(name, {}, kindText(option.kind), {}));
    }
  }
  return rows;
}

std::vector<std::string> switchRows() {
  std::vector<std::string> rows;
  std::ranges::transform(CommandTable, std::back_inserter(rows), [](const CommandRow& row) {
    return std::string(row.mode.name) + " " + std::string(row.help);
  });
  return rows;
}

std::vector<std::string> optionRows() {
  std::vector<std::string> rows;
  std::ranges::transform(SettingOptions, std::back_inserter(rows), [](const SettingOption& option) {
    return std::string(option.key) + " " + std::string(option.help);
  });
  return rows;
}

/// Returns all switches and options, one per line.
std::string names() {
  std::string text;
  for (const CommandRow& row : CommandTable) {
    text.append(row.mode.name).append("\n");
  }
  for (const SettingOption& option : SettingOptions) {
    text.append(option.key).append("\n");
  }
  return text;
}

/// Returns the words of the fuzzers' dictionary. Options with files are left out, because the
/// fuzzers must not open files of this machine.
std::string dictionary() {
  std::string text;
  const auto add = [&text](std::string_view word) {
    text.append("\"").append(word).append("\"\n");
  };
  for (const CommandRow& row : CommandTable) {
    add(row.mode.name);
  }
  for (const SettingOption& option : SettingOptions) {
    if (option.kind == Kind::File) {
      continue;
    }
    add(option.key);
    for (const SettingOption::Words& words : option.words) {
      std::ranges::for_each(words.list, add);
    }
  }
  return text;
}

}  // namespace

void addConfigTexts(Texts& texts) {
  const Names optionSwitches = switchesWith(Input::Options);
  texts["zvkconfig switches with options"] = joinedBold(optionSwitches, "|", "|");
  texts["zvkconfig list of switches with options"] = joinedBold(optionSwitches, ", ", " and ");
  texts["zvkconfig list of switches that retry"] = joinedBold(retryingSwitches(), ", ", ", ");
  texts["zvkconfig names of switches with options"] = catalogue::joined(optionSwitches, " ", " ");
  texts["zvkconfig switches with device"] = joinedBold(switchesWith(Input::DevicePath), "|", "|");
  texts["zvkconfig switches with NPA file"] = joinedBold(switchesWith(Input::NpaFile), "|", "|");
  texts["zvkconfig names of switches with NPA file"] =
      catalogue::joined(switchesWith(Input::NpaFile), " ", " ");
  texts["zvkconfig commands"] = commandEntries();
  texts["zvkconfig options of networks"] = optionEntries(Section::Networks);
  texts["zvkconfig options of keys"] = optionEntries(Section::Keys);
  texts["zvkconfig options of authentication"] = optionEntries(Section::Authentication);
  texts["zvkconfig options of certificates"] = optionEntries(Section::Certificates);
  texts["zvkconfig switch rows"] = shellRows(switchRows());
  texts["zvkconfig option rows"] = shellRows(optionRows());
  texts["zvkconfig value rows"] = shellRows(valueRows());
  texts["zvkconfig dictionary"] = dictionary();
  texts["zvkconfig names"] = names();
}

}  // namespace tools
