#include "emulator/options.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace emulator {

namespace {

constexpr std::size_t LargestPacketCount = 100;

/// One option: what it does with its value, which is empty for a switch.
struct Option {
  std::string_view name;
  std::string_view valueName;  ///< of the value; empty for a switch
  std::string_view help;
  void (*apply)(Options& options, const std::string& value);
};

constexpr std::array PersonalityOptions = {
    Option{"--refuse-wrapped", "", "refuse wrapped packets (flag D4)",
           [](Options& o, const std::string&) {
             o.personality.refuseWrapped = true;
           }},
    Option{"--refuse-all", "", "refuse every packet",
           [](Options& o, const std::string&) {
             o.personality.refuseAll = true;
           }},
    Option{"--silent", "", "never answer",
           [](Options& o, const std::string&) {
             o.personality.silent = true;
           }},
    Option{"--garbage", "", "answer with bytes that are no packet",
           [](Options& o, const std::string&) {
             o.personality.garbage = true;
           }},
    Option{"--late", "SECONDS", "answer so much later",
           [](Options& o, const std::string& value) {
             o.personality.answerAfter = std::chrono::seconds(parseNumber(value, LargestDelay));
           }},
    Option{"--cut", "BYTES", "cut each reply to this size",
           [](Options& o, const std::string& value) {
             o.personality.cutAt = parseNumber(value, LargestCount);
           }},
    Option{"--pieces", "BYTES", "send replies in pieces of this size",
           [](Options& o, const std::string& value) {
             o.personality.pieceSize = parseNumber(value, LargestCount);
           }},
    Option{"--result", "HEX", "last byte of the answer to settings (01: accepted)",
           [](Options& o, const std::string& value) {
             constexpr int hexadecimal = 16;
             o.personality.settingsResult = parseByte(value, hexadecimal);
           }},
    Option{"--ip", "A.B.C.D", "IP address (192.168.1.20)",
           [](Options& o, const std::string& value) {
             o.personality.ipAddress = parseAddress(value);
           }},
    Option{"--ip-after", "N|Ns", "have the address only after N queries for it, or N seconds",
           [](Options& o, const std::string& value) {
             o.personality.addressAcquired = parseReadiness(value);
           }},
    Option{"--trouble-code", "N", "trouble code (0: none)",
           [](Options& o, const std::string& value) {
             o.personality.troubleCode = parseByte(value);
           }},
    Option{"--trouble-over-after", "N|Ns",
           "have no trouble any more after N queries for it, or N seconds",
           [](Options& o, const std::string& value) {
             o.personality.troubleOver = parseReadiness(value);
           }},
    Option{"--ssid", "TEXT", "SSID that the adapter holds from the start",
           [](Options& o, const std::string& value) {
             o.personality.ssid = value;
           }},
    Option{"--descriptor", "TEXT", "adapter descriptor; programs expect it to end in '-'",
           [](Options& o, const std::string& value) {
             o.personality.descriptor = value;
           }},
    Option{"--auth-status", "N[,N...]", "802.1x status whatever is set; of several a record each",
           [](Options& o, const std::string& value) {
             o.personality.authStatus = parseBytes(value);
           }},
    Option{"--other-first", "", "802.1x: put another setting's record ahead",
           [](Options& o, const std::string&) {
             o.personality.otherRecordFirst = true;
           }},
    Option{"--cut-record", "BYTES", "802.1x: cut the last record, in a packet that is whole",
           [](Options& o, const std::string& value) {
             o.personality.cutRecordAt = parseNumber(value, LargestCount);
           }},
    Option{"--packets", "N", "802.1x and method calls: answer in so many packets",
           [](Options& o, const std::string& value) {
             o.personality.replyPackets = parseNumber(value, LargestPacketCount);
           }},
    Option{"--object-reply", "[METHOD:]FILE",
           "method calls: answer with FILE's bytes behind the flag byte",
           [](Options& o, const std::string& value) {
             o.personality.objectAnswers.push_back(parseObjectReply(value));
           }},
    Option{"--object-status", "[METHOD:]CODE", "method calls: do nothing, answer with this status",
           [](Options& o, const std::string& value) {
             o.personality.objectAnswers.push_back(parseObjectStatus(value));
           }},
    Option{"--cert-default", "NAME=TEXT", "default of certificate requests for O, OU, C, ... AN",
           [](Options& o, const std::string& value) {
             parseSubjectText(o.personality.certificates.defaults, value);
           }},
    Option{"--key-bits", "N", "make RSA keys of so many bits (0: keys on the curve P-256)",
           [](Options& o, const std::string& value) {
             o.personality.certificates.rsaBits = parseKeyBits(value);
           }},
    Option{"--no-factory-certificate", "", "have no certificate from the factory",
           [](Options& o, const std::string&) {
             o.personality.certificates.factoryCertificate = false;
           }},
};

constexpr std::array GeneralOptions = {
    Option{"--log", "FILE", "log to a file instead of standard error",
           [](Options& o, const std::string& value) {
             o.logFile = value;
           }},
    Option{"--show", "", "print what the printer holds in the end",
           [](Options& o, const std::string&) {
             o.showSettings = true;
           }},
    Option{"--state", "DIR", "keep settings and certificates in this folder from run to run",
           [](Options& o, const std::string& value) {
             o.stateFolder = value;
           }},
    Option{"--show-secrets", "", "do not mask keys and passwords",
           [](Options& o, const std::string&) {
             o.showSecrets = true;
           }},
    Option{"--no-namespace", "", "run: go straight to the link at a free /dev/usb/lpN",
           [](Options& o, const std::string&) {
             o.namespaces = false;
           }},
    Option{"--link", "PATH", "serve: where to put the link to the device",
           [](Options& o, const std::string& value) {
             o.link = value;
           }},
};

const Option* findOption(std::string_view name) {
  const auto named = [name](const Option& option) {
    return option.name == name;
  };
  if (const auto* const found = std::ranges::find_if(PersonalityOptions, named);
      found != PersonalityOptions.end()) {
    return found;
  }
  const auto* const found = std::ranges::find_if(GeneralOptions, named);
  return found == GeneralOptions.end() ? nullptr : found;
}

template <std::size_t Count>
void appendHelp(std::string& text, const std::array<Option, Count>& options) {
  constexpr std::size_t column = 32;
  for (const Option& option : options) {
    std::string line = "  " + std::string(option.name);
    if (!option.valueName.empty()) {
      line.append("=").append(option.valueName);
    }
    line.resize(std::max(column, line.size() + 1), ' ');
    text.append(line).append(option.help).append("\n");
  }
}

Options::Action parseAction(std::string_view text) {
  if (text == "run") {
    return Options::Action::Run;
  }
  if (text == "serve") {
    return Options::Action::Serve;
  }
  if (text == "show") {
    return Options::Action::Show;
  }
  if (text == "help" || text == "--help" || text == "-h") {
    return Options::Action::Help;
  }
  throw UsageError("'" + std::string(text) + "' is none of run, serve, show and help");
}

void checkCompleteness(const Options& options) {
  if (options.action == Options::Action::Run && options.command.empty()) {
    throw UsageError("run needs a command behind --");
  }
  if (options.action == Options::Action::Serve && options.link.empty()) {
    throw UsageError("serve needs --link=PATH");
  }
  if (options.action == Options::Action::Show && !options.stateFolder) {
    throw UsageError("show needs --state=DIR");
  }
}

}  // namespace

Options parseOptions(const std::vector<std::string>& arguments) {
  Options options;
  if (arguments.empty()) {
    return options;
  }
  options.action = parseAction(arguments.front());
  auto argument = arguments.begin() + 1;
  for (; argument != arguments.end() && *argument != "--"; ++argument) {
    const std::size_t equals = argument->find('=');
    const std::string name = argument->substr(0, equals);
    const Option* const option = findOption(name);
    if (option == nullptr) {
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
  if (argument != arguments.end()) {
    options.command.assign(argument + 1, arguments.end());
  }
  checkCompleteness(options);
  return options;
}

std::string helpText() {
  std::string text =
      "zvkprinter: an emulated printer with a wireless adapter\n"
      "\n"
      "  zvkprinter run [OPTION...] -- COMMAND [ARGUMENT...]\n"
      "      Runs COMMAND with the emulated printer at /dev/usb/lp0, which only COMMAND sees.\n"
      "      Where that is not permitted, the printer is at another name meanwhile; {} in an\n"
      "      argument stands for the name in either case. Ends with COMMAND's exit status.\n"
      "\n"
      "  zvkprinter serve --link=PATH [OPTION...]\n"
      "      Keeps the printer running with a link to it at PATH, until it is interrupted.\n"
      "\n"
      "  zvkprinter show --state=DIR [OPTION...]\n"
      "      Says what the printer that keeps its state in DIR holds.\n"
      "\n"
      "How the printer behaves:\n";
  appendHelp(text, PersonalityOptions);
  text.append("\nWhat else there is:\n");
  appendHelp(text, GeneralOptions);
  return text;
}

}  // namespace emulator
