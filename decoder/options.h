#pragma once

#include <span>
#include <string>
#include <vector>

#include "catalogue/option_parser.h"

namespace decoder {

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

using OptionGroup = catalogue::OptionGroup<Options>;

/// All options.
std::span<const OptionGroup> optionGroups();

/// Reads the arguments after the program's name; throws `catalogue::UsageError`.
Options parseOptions(const std::vector<std::string>& arguments);

/// The help text.
std::string helpText();

/// The settings that have a name, a line for each: group, object, kind of the value, whether it is
/// secret, names of group and setting, and what its numbers mean, with tabs between them.
std::string objectsText();

}  // namespace decoder
