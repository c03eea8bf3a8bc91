#pragma once

#include <algorithm>
#include <array>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// Command lines of the companion programs, read by tables. The manual pages and the shells'
/// completions are made from the same tables.
namespace catalogue {

/// A wrong command line. The message names the subject and what was expected, such as
/// "--late: expected a number of seconds from 0 to 3600, got 'x'".
struct UsageError : std::runtime_error {
  using std::runtime_error::runtime_error;
  UsageError(std::string_view subject, std::string_view expected);
  UsageError(std::string_view subject, std::string_view expected, std::string_view got);
};

/// Thrown by the reader of a value; the text says what was expected, such as "an IPv4 address".
struct ValueError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// What a value names.
enum class ValueKind {
  Text,    ///< any text; `words` are only offered for completion
  Words,   ///< one of `words`, anything else is a usage error
  File,    ///< a file
  Folder,  ///< a folder
};

/// An option. `Options` is what the command line fills.
template <typename Options>
struct Option {
  std::string_view name;            ///< with its dashes
  std::string_view shortName = {};  ///< the same in another way, such as "-h"
  std::string_view valueName = {};  ///< such as "BYTES"; without it and `words` there is no value
  ValueKind kind = ValueKind::Text;
  std::span<const std::string_view> words = {};
  std::string_view help;          ///< one line: an imperative or a noun, without a full stop
  std::string_view details = {};  ///< what the manual page adds: sentences, in scdoc
  void (*apply)(Options& options, const std::string& value);
};

/// Options under one heading.
template <typename Options>
struct OptionGroup {
  std::string_view title;
  std::span<const Option<Options>> options;
};

/// The first word of a command line that says what the program does.
template <typename Options>
struct Command {
  std::string_view name;
  std::array<std::string_view, 2> otherNames = {};
  typename Options::Action action;
  std::array<std::string_view, 2> usages = {};  ///< what follows the name
  std::string_view help;                        ///< as for an option
  std::string_view details = {};                ///< as for an option
  /// Throws `UsageError` if something is missing once all options are read; may be null.
  void (*check)(const Options& options) = nullptr;
};

/// The words of a command line that are not options.
struct Operands {
  std::vector<std::string> before;  ///< those before "--"
  std::vector<std::string> after;   ///< those after it
};

/// Words with `separator` between them, but `last` before the last one: "run, serve or help".
std::string joined(std::span<const std::string_view> words, std::string_view separator,
                   std::string_view last);

/// A value as a usage line shows it: its name, or its words with "|" between them.
std::string valueText(std::string_view valueName, std::span<const std::string_view> words);

/// A help text as a sentence: "Run a command.".
std::string sentence(std::string_view help);

/// One entry of a list of options or commands: the text at `column`, or on a line of its own if
/// `entry` is too long.
std::string helpEntry(std::string_view entry, std::string_view text, std::size_t column);

/// Checks the value of an option of kind `Words`; throws `ValueError`.
void checkWord(const std::string& value, std::span<const std::string_view> words);

/// An option as a usage line shows it: "--late=SECONDS".
template <typename Options>
std::string optionText(const Option<Options>& option) {
  const std::string value = valueText(option.valueName, option.words);
  return std::string(option.name) + (value.empty() ? "" : "=") + value;
}

/// Returns the option of that name, or null.
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

/// Applies an option to its value; throws `UsageError`.
template <typename Options>
void applyOption(const Option<Options>& option, Options& options, const std::string& value) {
  try {
    if (option.kind == ValueKind::Words) {
      checkWord(value, option.words);
    }
    option.apply(options, value);
  } catch (const ValueError& error) {
    throw UsageError(option.name, error.what(), value);
  }
}

/// Reads arguments up to "--" as options and operands, in any order, and returns the operands. A
/// value follows "=" or is the next argument. Throws `UsageError`.
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

/// Returns the command of that name; throws `UsageError` if there is none.
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

/// The lists of options, each under its title.
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

/// The list of commands, each with how it is called.
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
