#pragma once

#include <algorithm>
#include <array>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// The command lines of zvkprinter and zvknpa. A program describes its options and commands in
/// tables. The parser fills an object of the program's type `Options`:
///
///     const Command<Options>& command = findCommand(commands(), arguments.front());
///     Options options;
///     const Operands operands = parseArguments(optionGroups(), arguments.subspan(1), options);
///
/// The build generates the lists in the manual pages and the shells' completions from the same
/// tables.
namespace catalogue {

/// Thrown for an invalid command line. Most messages name the subject and what was expected:
/// "--late: expected a number of seconds from 0 to 3600, got 'x'".
struct UsageError : std::runtime_error {
  using std::runtime_error::runtime_error;
  UsageError(std::string_view subject, std::string_view expected);
  UsageError(std::string_view subject, std::string_view expected, std::string_view got);
};

/// Thrown by the parser of a value. The message names the expected value, such as "an IPv4
/// address".
struct ValueError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// The kind of an option's value. The shells' completions use this kind.
enum class ValueKind {
  Text,    ///< any text; completions suggest the `words`
  Words,   ///< one of `words`; any other text is a usage error
  File,    ///< the path of a file
  Folder,  ///< the path of a folder
};

/// One option: a row of a program's table.
template <typename Options>
struct Option {
  std::string_view name;            ///< with its dashes
  std::string_view shortName = {};  ///< another name, such as "-h"
  std::string_view valueName = {};  ///< such as "BYTES"
  ValueKind kind = ValueKind::Text;
  /// The allowed or suggested values. If `words` and `valueName` are empty, the option takes no
  /// value.
  std::span<const std::string_view> words = {};
  bool isSecret = false;          ///< error messages do not show the value
  std::string_view help;          ///< one line: an imperative or a noun, without a full stop
  std::string_view details = {};  ///< further sentences for the manual page, as scdoc source
  /// Stores the value in `options`. Throws `ValueError` for an invalid value.
  void (*apply)(Options& options, const std::string& value);
};

/// Options under one heading.
template <typename Options>
struct OptionGroup {
  std::string_view title;
  std::span<const Option<Options>> options;
};

/// One command: the first word of a command line, which selects what the program does.
template <typename Options>
struct Command {
  std::string_view name;
  std::array<std::string_view, 2> otherNames = {};
  typename Options::Action action;
  std::array<std::string_view, 2> usages =
      {};                         ///< one or two forms of the arguments after the name
  std::string_view help;          ///< as `Option::help`
  std::string_view details = {};  ///< as `Option::details`
  /// Checks the options after parsing. Throws `UsageError` if a required option or operand is
  /// missing. The pointer is null if the command requires no option and no operand.
  void (*check)(const Options& options) = nullptr;
};

/// The arguments of a command line that are not options.
struct Operands {
  std::vector<std::string> before;  ///< before "--"
  std::vector<std::string> after;   ///< after "--"
};

/// Returns the words with `separator` between them, but with `last` before the last word:
///
///     joined(words, ", ", " or ");  // run, serve or help
std::string joined(std::span<const std::string_view> words, std::string_view separator,
                   std::string_view last);

/// Returns how a usage line shows a value: by its name or, if it has none, by its words with "|"
/// between them.
std::string valueText(std::string_view valueName, std::span<const std::string_view> words);

/// Returns a help text as a sentence with a capital and a full stop: "Run a command.".
std::string sentence(std::string_view help);

/// Returns an entry of a list of options or commands: `entry`, and `text` from `column` on. If
/// `entry` is too long, `text` is on a separate line.
std::string helpEntry(std::string_view entry, std::string_view text, std::size_t column);

/// Throws `ValueError` unless `value` is one of `words`.
void checkWord(const std::string& value, std::span<const std::string_view> words);

/// Returns an option in the form of a usage line: "--late=SECONDS".
template <typename Options>
std::string optionText(const Option<Options>& option) {
  const std::string value = valueText(option.valueName, option.words);
  return std::string(option.name) + (value.empty() ? "" : "=") + value;
}

/// Returns the option whose name or short name is `name`, or null if there is none.
template <typename Options>
const Option<Options>* findOption(std::span<const OptionGroup<Options>> groups,
                                  std::string_view name) {
  for (const OptionGroup<Options>& group : groups) {
    for (const Option<Options>& option : group.options) {
      if (option.name == name || (!name.empty() && option.shortName == name)) {
        return &option;
      }
    }
  }
  return nullptr;
}

/// Stores the value of an option in `options`. Throws `UsageError` if the value is invalid.
template <typename Options>
void applyOption(const Option<Options>& option, Options& options, const std::string& value) {
  try {
    if (option.kind == ValueKind::Words) {
      checkWord(value, option.words);
    }
    option.apply(options, value);
  } catch (const ValueError& error) {
    if (option.isSecret) {
      throw UsageError(option.name, error.what());
    }
    throw UsageError(option.name, error.what(), value);
  }
}

/// Parses options and operands, in any order, up to "--". Stores the options in `options` and
/// returns the operands. The value of an option follows "=" or is the next argument. The argument
/// "-" is an operand. Throws `UsageError` for an unknown option or a missing, unexpected or invalid
/// value.
template <typename Options>
Operands parseArguments(std::span<const OptionGroup<Options>> groups,
                        std::span<const std::string> arguments, Options& options) {
  Operands operands;
  while (!arguments.empty()) {
    const std::string& argument = arguments.front();
    arguments = arguments.subspan(1);
    if (argument == "--") {
      operands.after.assign(arguments.begin(), arguments.end());
      break;
    }
    if (argument == "-" || !argument.starts_with('-')) {
      operands.before.push_back(argument);
      continue;
    }
    const std::size_t equals = argument.find('=');
    const std::string name = argument.substr(0, equals);
    const Option<Options>* const option = findOption(groups, name);
    if (option == nullptr) {
      throw UsageError(name + ": no such option");
    }
    const bool takesValue = !option->valueName.empty() || !option->words.empty();
    std::string value;
    if (equals != std::string::npos) {
      value = argument.substr(equals + 1);
      if (!takesValue) {
        throw UsageError(name, "no value", value);
      }
    } else if (takesValue) {
      if (arguments.empty()) {
        throw UsageError(name, "a value");
      }
      value = arguments.front();
      arguments = arguments.subspan(1);
    }
    applyOption(*option, options, value);
  }
  return operands;
}

/// Returns the command whose name is `name`. Throws `UsageError` if there is none.
template <typename Options>
const Command<Options>& findCommand(std::span<const Command<Options>> commands,
                                    std::string_view name) {
  std::vector<std::string_view> names;
  for (const Command<Options>& command : commands) {
    if (command.name == name || (!name.empty() && std::ranges::find(command.otherNames, name) !=
                                                      command.otherNames.end())) {
      return command;
    }
    names.push_back(command.name);
  }
  throw UsageError("command", joined(names, ", ", " or "), name);
}

/// Returns the options of all groups for a help text, each group under its title.
template <typename Options>
std::string optionList(std::span<const OptionGroup<Options>> groups) {
  constexpr std::size_t widest = 28;
  std::size_t width = 0;
  for (const OptionGroup<Options>& group : groups) {
    for (const Option<Options>& option : group.options) {
      width = std::max(width, std::min(widest, optionText(option).size()));
    }
  }
  std::string text;
  for (const OptionGroup<Options>& group : groups) {
    text.append("\n").append(group.title).append(":\n");
    for (const Option<Options>& option : group.options) {
      text.append(helpEntry(optionText(option), option.help, width + 4));
    }
  }
  return text;
}

/// Returns the commands for a help text, each with its usages and a sentence.
template <typename Options>
std::string commandList(std::string_view program, std::span<const Command<Options>> commands) {
  std::string text;
  for (const Command<Options>& command : commands) {
    text.append("\n");
    for (std::size_t i = 0; i < command.usages.size(); ++i) {
      if (i == 0 || !command.usages[i].empty()) {
        text.append("  ").append(program).append(" ").append(command.name);
        text.append(command.usages[i].empty() ? "" : " ").append(command.usages[i]).append("\n");
      }
    }
    text.append("      ").append(sentence(command.help)).append("\n");
  }
  return text;
}

}  // namespace catalogue
