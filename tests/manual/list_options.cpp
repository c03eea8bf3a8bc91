// Prints the switches and options of the programs as their own tables have them, for the tests of
// what is written about them: the program, a blank, the name, and "=" where a value follows.

#include <cstdio>
#include <string>
#include <string_view>

#include "cli/command_table.h"
#include "decoder/options.h"
#include "emulator/run/option_table.h"
#include "settings/option_table.h"

namespace {

void print(const char* program, std::string_view name, bool takesValue) {
  std::printf("%s %s%s\n", program, std::string(name).c_str(), takesValue ? "=" : "");
}

template <typename Groups>
void printOptions(const char* program, const Groups& groups) {
  for (const auto& group : groups) {
    for (const auto& option : group.options) {
      print(program, option.name, !catalogue::valueText(option.valueName, option.words).empty());
    }
  }
}

}  // namespace

int main() {
  for (const CommandRow& row : CommandTable) {
    print("zvkconfig", row.mode.name, false);
  }
  for (const SettingOption& option : SettingOptions) {
    print("zvkconfig", option.key, false);
  }
  printOptions("zvkprinter", emulator::optionGroups());
  printOptions("zvknpa", decoder::optionGroups());
  return 0;
}
