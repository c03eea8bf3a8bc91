// The command line of zvkprinter. option_table.cpp has its commands and options.

#include "emulator/run/command_line.h"

#include <span>

#include "emulator/run/option_table.h"

namespace emulator {

Options parseOptions(const std::vector<std::string>& arguments) {
  Options options;
  if (arguments.empty()) {
    return options;
  }
  const Command& command = catalogue::findCommand(commands(), arguments.front());
  options.action = command.action;
  catalogue::Operands operands =
      catalogue::parseArguments(optionGroups(), std::span(arguments).subspan(1), options);
  if (!operands.before.empty()) {
    throw catalogue::UsageError(operands.before.front(), "an option, or -- and a command");
  }
  options.command = std::move(operands.after);
  if (options.radio && !options.personality.networks.empty()) {
    throw catalogue::UsageError("--radio", "no --network");
  }
  if (command.check != nullptr) {
    command.check(options);
  }
  return options;
}

std::string helpText() {
  return "zvkprinter: emulate a printer with a wireless adapter\n" +
         catalogue::commandList("zvkprinter", commands()) +
         "\n"
         "In an argument of COMMAND, {} stands for the path of the printer's device.\n" +
         catalogue::optionList(optionGroups());
}

}  // namespace emulator
