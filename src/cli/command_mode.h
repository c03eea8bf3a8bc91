#pragma once

#include <string_view>

#include "wireless/wnpa_generator.h"

/// What a command switch stands for.
struct CommandMode {
  /// Where the settings of a command come from, next to the device path.
  enum class Settings { None, Options };

  std::string_view name;
  Settings settings;
  /// The generator's operation, or null where the run driver does the work itself.
  int (wnpaGenerator::*operation)();
  /// Whether a refusal (-1) is answered by one more try with bare packets.
  bool retriesBare;
};

/// Returns the mode of a command switch, compared exactly, or null when there is none.
const CommandMode* findCommandMode(std::string_view name);
