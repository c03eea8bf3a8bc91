#include "decoder/options.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "catalogue/hex_text.h"
#include "catalogue/setting_catalogue.h"

namespace decoder {

namespace {

Options::Form parseForm(const std::string& text) {
  if (text == "text") {
    return Options::Form::Text;
  }
  if (text == "capture") {
    return Options::Form::Capture;
  }
  throw UsageError("'" + text + "' is no form of input: text or capture");
}

/// "1:5", as the reader of captures writes it.
std::string parseDevice(const std::string& text) {
  const std::size_t colon = text.find(':');
  constexpr std::string_view digits = "0123456789";
  const std::string bus = text.substr(0, colon);
  const std::string device = colon == std::string::npos ? "" : text.substr(colon + 1);
  for (const std::string& number : {bus, device}) {
    constexpr std::size_t longest = 5;
    if (number.empty() || number.size() > longest ||
        number.find_first_not_of(digits) != std::string::npos) {
      throw UsageError("'" + text + "' is no device such as 1:5");
    }
  }
  return std::to_string(std::stoul(bus)) + ":" + std::to_string(std::stoul(device));
}

constexpr std::array OptionTable = {
    Option{"--json", "", "write one JSON document",
           [](Options& o, const std::string&) {
             o.json = true;
           }},
    Option{"--secrets", "", "do not mask keys and passwords",
           [](Options& o, const std::string&) {
             o.showSecrets = true;
           }},
    Option{"--form", "text|capture", "read the input so, whatever it looks like",
           [](Options& o, const std::string& value) {
             o.form = parseForm(value);
           }},
    Option{"--device", "BUS:DEVICE", "look at this device of a capture only",
           [](Options& o, const std::string& value) {
             o.device = parseDevice(value);
           }},
    Option{"--objects", "", "list the settings that are known",
           [](Options& o, const std::string&) {
             o.action = Options::Action::Objects;
           }},
    Option{"--help", "", "print this text",
           [](Options& o, const std::string&) {
             o.action = Options::Action::Help;
           }},
};

std::string_view valueText(catalogue::SettingInfo::Kind kind) {
  using Kind = catalogue::SettingInfo::Kind;
  switch (kind) {
    case Kind::Text:
      return "text";
    case Kind::Number:
      return "number";
    case Kind::Flag:
      return "flag";
    case Kind::Address:
      return "address";
  }
  return {};
}

}  // namespace

std::span<const Option> optionTable() {
  return OptionTable;
}

Options parseOptions(const std::vector<std::string>& arguments) {
  Options options;
  bool onlyInputs = false;
  for (auto argument = arguments.begin(); argument != arguments.end(); ++argument) {
    if (!onlyInputs && *argument == "--") {
      onlyInputs = true;
      continue;
    }
    if (onlyInputs || !argument->starts_with('-') || *argument == "-") {
      options.inputs.push_back(*argument);
      continue;
    }
    const std::size_t equals = argument->find('=');
    const std::string name = *argument == "-h" ? "--help" : argument->substr(0, equals);
    const auto* const option = std::ranges::find(OptionTable, name, &Option::name);
    if (option == OptionTable.end()) {
      throw UsageError("there is no option '" + name + "'");
    }
    const bool takesValue = !option->valueName.empty();
    if (!takesValue && equals != std::string::npos) {
      throw UsageError(name + " takes no value");
    }
    std::string value;
    if (equals != std::string::npos) {
      value = argument->substr(equals + 1);
    } else if (takesValue) {
      if (++argument == arguments.end()) {
        throw UsageError(name + " needs a value");
      }
      value = *argument;
    }
    option->apply(options, value);
  }
  if (options.inputs.empty()) {
    options.inputs.emplace_back("-");
  }
  return options;
}

std::string helpText() {
  std::string text =
      "zvknpa: what is said to a printer's wireless adapter, in words\n"
      "\n"
      "  zvknpa [OPTION...] [FILE...]\n"
      "      Reads NPA packets: as hex text, from a dump of xxd or hexdump -C, from the log of\n"
      "      zvkconfig or zvkprinter, or from a capture of the USB. Without FILE, or for -, it\n"
      "      reads standard input.\n"
      "\n";
  for (const Option& option : OptionTable) {
    constexpr std::size_t column = 25;
    std::string line = "  " + std::string(option.name);
    if (!option.valueName.empty()) {
      line.append("=").append(option.valueName);
    }
    line.resize(std::max(column, line.size() + 1), ' ');
    text.append(line).append(option.help).append("\n");
  }
  return text.append(
      "\n"
      "Ends with 0 when everything was decoded, 1 when something was no whole packet or of no\n"
      "known kind, 2 when the command line is wrong or an input cannot be read, 3 when an input\n"
      "holds nothing that looks like a packet.\n");
}

std::string objectsText() {
  std::string text;
  for (const catalogue::SettingInfo& info : catalogue::settingCatalogue()) {
    text.append(catalogue::hexText(std::array{info.key.group})).append("\t");
    text.append(catalogue::hexText(std::array{info.key.object})).append("\t");
    text.append(valueText(info.kind)).append("\t");
    text.append(info.secret ? "secret" : "plain").append("\t");
    text.append(catalogue::groupName(info.key.group)).append("\t");
    text.append(info.name).append("\t");
    for (std::size_t i = 0; i < info.numberNames.size(); ++i) {
      text.append(i == 0 ? "" : "; ").append(std::to_string(i)).append("=");
      text.append(info.numberNames[i]);
    }
    text.append("\n");
  }
  return text;
}

}  // namespace decoder
