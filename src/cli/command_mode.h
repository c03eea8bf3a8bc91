#pragma once

#include <span>
#include <string_view>

#include "wireless/wnpa_generator.h"

/// What a command switch stands for.
struct CommandMode {
  /// Where a command's settings come from.
  enum class Input {
    DevicePath,  ///< nothing but the device path from the command line
    Options,     ///< options from the command line, or from a file after "-file"
    NpaFile,     ///< an NPA data file after "-file"
  };

  /// Who does the work.
  enum class Worker {
    Generator,     ///< `operation`
    DefaultRun,    ///< the generator's default run, whose result does not count
    Help,          ///< the help text
    RawSender,     ///< the NPA data goes out as it stands
    Certificates,  ///< the certificate commands, which have no generator
  };

  std::string_view name;
  Input input;
  Worker worker;
  int (wnpaGenerator::*operation)();
  /// Whether a refusal (-1) is answered by one more try with bare packets.
  bool retriesBare;
};

/// Returns the mode of a command switch, compared exactly. Every text has one: one that is no
/// switch runs the generator's default run.
const CommandMode& commandMode(std::string_view name);

/// The modes of all switches.
std::span<const CommandMode> commandModes();
