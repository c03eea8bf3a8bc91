#include "cli/command_mode.h"

#include <algorithm>
#include <array>

namespace {

using Settings = CommandMode::Settings;

constexpr std::array CommandModes = {
    CommandMode{"-h", Settings::None, nullptr, false},
    CommandMode{"-c", Settings::Options, &wnpaGenerator::configBasic, true},
};

}  // namespace

const CommandMode* findCommandMode(std::string_view name) {
  const auto* const found = std::ranges::find(CommandModes, name, &CommandMode::name);
  return found == CommandModes.end() ? nullptr : found;
}
