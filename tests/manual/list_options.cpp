// Prints the switches and options of the programs as their own tables have them, for the tests of
// what is written about them: the program, a blank, the name, and "=" where a value follows.

#include <cstdio>
#include <string>

#include "cli/command_mode.h"
#include "decoder/options.h"
#include "emulator/run/option_table.h"
#include "settings/config_details.h"

int main() {
  for (const CommandMode& mode : commandModes()) {
    std::printf("zvkconfig %s\n", std::string(mode.name).c_str());
  }
  for (const std::string& key : configDetails::optionKeys()) {
    std::printf("zvkconfig %s\n", key.c_str());
  }
  for (const auto options :
       {emulator::personalityOptions(), emulator::usbOptions(), emulator::generalOptions()}) {
    for (const emulator::Option& option : options) {
      std::printf("zvkprinter %s%s\n", std::string(option.name).c_str(),
                  option.valueName.empty() ? "" : "=");
    }
  }
  for (const decoder::Option& option : decoder::optionTable()) {
    std::printf("zvknpa %s%s\n", std::string(option.name).c_str(),
                option.valueName.empty() ? "" : "=");
  }
  return 0;
}
