// The options of zvknpa. catalogue/option_parser.h explains the columns.

#include "decoder/options.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <iterator>
#include <utility>

#include "catalogue/hex_text.h"
#include "catalogue/setting_catalogue.h"

namespace decoder {

namespace {

using catalogue::ValueKind;
using Option = catalogue::Option<Options>;

constexpr std::array<std::string_view, 2> Forms = {"text", "capture"};

/// Parses "1:5" or "001:005". Returns "1:5", the form of `UsbEvent::deviceName`.
std::string parseDevice(const std::string& text) {
  const std::size_t colon = text.find(':');
  constexpr std::string_view digits = "0123456789";
  const std::string bus = text.substr(0, colon);
  const std::string device = colon == std::string::npos ? "" : text.substr(colon + 1);
  for (const std::string& number : {bus, device}) {
    constexpr std::size_t longest = 5;
    if (number.empty() || number.size() > longest ||
        number.find_first_not_of(digits) != std::string::npos) {
      throw catalogue::ValueError("a bus and a device number such as 1:5");
    }
  }
  return std::to_string(std::stoul(bus)) + ":" + std::to_string(std::stoul(device));
}

constexpr std::array OptionTable = {
    Option{.name = "--json",
           .help = "write one JSON document",
           .details =
               "The document has all inputs and packets. In texts, U+FFFD replaces the bytes that "
               "are not UTF-8.",
           .apply =
               [](Options& o, const std::string&) {
                 o.json = true;
               }},
    Option{.name = "--secrets",
           .help = "do not mask keys and passwords",
           .details =
               "The values of unknown settings, and data that cannot be decoded, are not masked "
               "either. Bytes that are masked in the input stay masked.",
           .apply =
               [](Options& o, const std::string&) {
                 o.showSecrets = true;
               }},
    Option{.name = "--form",
           .kind = ValueKind::Words,
           .words = Forms,
           .help = "read all inputs in this form instead of recognising the form",
           .apply =
               [](Options& o, const std::string& value) {
                 o.form = value == Forms.front() ? Options::Form::Text : Options::Form::Capture;
               }},
    Option{.name = "--device",
           .valueName = "BUS:DEVICE",
           .help = "read only the transfers of this device in a capture, such as 1:5",
           .apply =
               [](Options& o, const std::string& value) {
                 o.device = parseDevice(value);
               }},
    Option{.name = "--objects",
           .help = "list the known settings",
           .details =
               "Each line is one setting. Tabs separate the columns: group, object number, kind of "
               "the value, \"secret\" or \"plain\", name of the group, name of the setting, and "
               "the values that have a name, such as \"0=managed; 1=ad-hoc\".",
           .apply =
               [](Options& o, const std::string&) {
                 o.action = Options::Action::Objects;
               }},
    Option{.name = "--help",
           .shortName = "-h",
           .help = "print a help text",
           .apply =
               [](Options& o, const std::string&) {
                 o.action = Options::Action::Help;
               }},
};

constexpr std::array Groups = {OptionGroup{"Options", OptionTable}};

}  // namespace

std::span<const OptionGroup> optionGroups() {
  return Groups;
}

Options parseOptions(const std::vector<std::string>& arguments) {
  Options options;
  catalogue::Operands operands =
      catalogue::parseArguments(optionGroups(), std::span(arguments), options);
  options.inputs = std::move(operands.before);
  std::ranges::move(operands.after, std::back_inserter(options.inputs));
  if (options.inputs.empty()) {
    options.inputs.emplace_back("-");
  }
  return options;
}

std::string helpText() {
  return "zvknpa: decode the packets of a printer's wireless adapter\n"
         "\n"
         "  zvknpa [OPTION...] [FILE...]\n"
         "      Decode the NPA packets in FILE: hex text, a dump of xxd or hexdump -C, the log of\n"
         "      zvkconfig or zvkprinter, or a capture of the USB. Without FILE, or if FILE is -,\n"
         "      read standard input.\n" +
         catalogue::optionList(optionGroups()) +
         "\n"
         "Exit status:\n"
         "  0  everything was decoded\n"
         "  1  some bytes are not a whole packet, or a packet is of an unknown kind\n"
         "  2  the command line is wrong, an input cannot be read, or the output cannot be "
         "written\n"
         "  3  an input contains nothing that looks like a packet\n";
}

std::string objectsText() {
  std::string text;
  for (const catalogue::SettingInfo& info : catalogue::settingCatalogue()) {
    text.append(catalogue::hexText(std::array{info.key.group})).append("\t");
    text.append(catalogue::hexText(std::array{info.key.object})).append("\t");
    text.append(catalogue::kindName(info.kind)).append("\t");
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
