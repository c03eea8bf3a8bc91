#pragma once

#include <span>
#include <string>
#include <vector>

#include "catalogue/option_parser.h"

namespace decoder {

/// The parsed command line of zvknpa.
struct Options {
  enum class Action { Decode, Objects, Help };
  enum class Form { Any, Text, Capture };

  Action action = Action::Decode;
  Form form = Form::Any;
  bool json = false;
  bool showSecrets = false;
  std::string device;               ///< the only device to read in a capture; empty: all devices
  std::vector<std::string> inputs;  ///< at least one path; "-" is standard input
};

using OptionGroup = catalogue::OptionGroup<Options>;

/// Returns all options.
std::span<const OptionGroup> optionGroups();

/// Parses the arguments after the program's name. Throws `catalogue::UsageError` if they are
/// invalid.
Options parseOptions(const std::vector<std::string>& arguments);

/// Returns the help text.
std::string helpText();

/// Returns the known settings, one per line, with tabs between the columns: group, object, kind of
/// the value, "secret" or "plain", name of the group, name of the setting, and the meanings of the
/// possible numbers, for example "0=none; 1=WEP".
std::string objectsText();

}  // namespace decoder
