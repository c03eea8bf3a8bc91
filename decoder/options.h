#pragma once

#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace decoder {

/// A command line that makes no sense; the text says why.
struct UsageError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// The command line of zvknpa, taken apart.
struct Options {
  enum class Action { Decode, Objects, Help };
  enum class Form { Any, Text, Capture };

  Action action = Action::Decode;
  Form form = Form::Any;
  bool json = false;
  bool showSecrets = false;
  std::string device;               ///< of a capture, the only one to look at; empty for all
  std::vector<std::string> inputs;  ///< files, "-" for standard input; at least one
};

/// One option: what it does with its value, which is empty for a switch.
struct Option {
  std::string_view name;
  std::string_view valueName;  ///< of the value; empty for a switch
  std::string_view help;
  void (*apply)(Options& options, const std::string& value);
};

/// All options there are.
std::span<const Option> optionTable();

/// Reads the arguments behind the program's name; throws `UsageError`.
Options parseOptions(const std::vector<std::string>& arguments);

/// The help text.
std::string helpText();

/// The settings that have a name, a line for each: group, object, kind of the value, whether it is
/// secret, names of group and setting, and what its numbers mean, with tabs between them.
std::string objectsText();

}  // namespace decoder
