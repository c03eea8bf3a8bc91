// Finds the mode of a command switch in the command table.

#include "cli/command_mode.h"

#include <algorithm>
#include <array>

#include "cli/command_table.h"

namespace {

/// The modes of the table without the texts for the manual page, which the program does not need.
constexpr auto Modes = [] {
  std::array<CommandMode, CommandTable.size()> modes{};
  std::ranges::transform(CommandTable, modes.begin(), &CommandRow::mode);
  return modes;
}();
constexpr CommandMode DefaultMode = DefaultRunRow.mode;

}  // namespace

const CommandMode& commandMode(std::string_view name) {
  const auto* const found = std::ranges::find(Modes, name, &CommandMode::name);
  return found == Modes.end() ? DefaultMode : *found;
}
