#include "emulator/run/options.h"

#include <algorithm>
#include <span>
#include <string_view>

#include "emulator/run/option_table.h"

namespace emulator {

namespace {

void appendHelp(std::string& text, std::span<const Option> options) {
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
  if (text == "usb") {
    return Options::Action::Usb;
  }
  if (text == "show") {
    return Options::Action::Show;
  }
  if (text == "help" || text == "--help" || text == "-h") {
    return Options::Action::Help;
  }
  throw UsageError("'" + std::string(text) + "' is none of run, serve, usb, show and help");
}

void checkCompleteness(const Options& options) {
  if (options.action == Options::Action::Run && options.command.empty()) {
    throw UsageError("run needs a command behind --");
  }
  if (options.action == Options::Action::Serve && options.link.empty()) {
    throw UsageError("serve needs --link=PATH");
  }
  if (options.action == Options::Action::Usb && options.attach == options.port.has_value()) {
    throw UsageError("usb needs one of --attach and --port=N");
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
      "  zvkprinter usb --attach [OPTION...] [-- COMMAND [ARGUMENT...]]\n"
      "  zvkprinter usb --port=N [OPTION...] [-- COMMAND [ARGUMENT...]]\n"
      "      Is a USB printer: plugged into this machine, or served for 'usbip attach'; until it "
      "is\n"
      "      interrupted or COMMAND has ended, with whose exit status it ends. SIGUSR1 unplugs it\n"
      "      and plugs it in again. With --attach {} in an argument stands for the printer's "
      "node,\n"
      "      which is waited for.\n"
      "\n"
      "  zvkprinter show --state=DIR [OPTION...]\n"
      "      Says what the printer that keeps its state in DIR holds.\n"
      "\n"
      "How the printer behaves:\n";
  appendHelp(text, personalityOptions());
  text.append("\nHow it behaves as a USB device ('usb' only):\n");
  appendHelp(text, usbOptions());
  text.append("\nWhat else there is:\n");
  appendHelp(text, generalOptions());
  return text;
}

}  // namespace emulator
