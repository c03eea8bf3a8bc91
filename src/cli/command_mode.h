#pragma once

#include <string_view>

#include "wireless/wnpa_generator.h"

/// What one command switch does: the source of its settings, and the operation that runs with them.
/// The table of modes is `CommandTable` (command_table.h).
///
///     const CommandMode& mode = commandMode("-ip");
///     mode.worker;       // CommandMode::Worker::Generator
///     mode.retriesBare;  // true
struct CommandMode {
  /// The source of the settings.
  enum class Input {
    DevicePath,  ///< only the device path from the command line
    Options,     ///< options from the command line, or from a file after "-file"
    NpaFile,     ///< an NPA data file after "-file"
  };

  /// The part of the program that runs the command. Except for `DefaultRun`, the exit status is the
  /// result of this part.
  enum class Worker {
    Generator,     ///< `CommandMode::operation`, an operation of `wnpaGenerator`
    DefaultRun,    ///< `wnpaGenerator::generate`; the exit status is always 0
    Help,          ///< `zvkSetup::showHelp`
    RawSender,     ///< `wnpaGenerator::sendNPAData`, with the bytes of the NPA data file
    Certificates,  ///< `CertProc::run`, without a `wnpaGenerator`
  };

  /// The switch as typed, such as "-ip". Empty for the default run, which has no switch.
  std::string_view name;
  Input input = Input::DevicePath;
  Worker worker = Worker::Generator;
  /// Set for `Worker::Generator`, null for the other workers.
  int (wnpaGenerator::*operation)() = nullptr;
  /// True if the program runs the operation a second time, with bare packets, when the first result
  /// is -1. Some adapters refuse wrappers.
  bool retriesBare = false;
};

/// Returns the mode of the command switch `name`. The spelling must be exact. If `name` is not a
/// switch, returns the mode of the default run. The reference is valid until the program ends.
const CommandMode& commandMode(std::string_view name);
