#pragma once

#include <string_view>

#include "wireless/wnpa_generator.h"

/// What one command switch does: where its settings come from, and what runs with them. The rows
/// are in `CommandTable` (command_table.h).
///
///     const CommandMode& mode = commandMode("-ip");
///     mode.worker;       // CommandMode::Worker::Generator
///     mode.retriesBare;  // true
struct CommandMode {
  /// Where the settings come from.
  enum class Input {
    DevicePath,  ///< only the device path from the command line
    Options,     ///< options from the command line, or from a file after "-file"
    NpaFile,     ///< an NPA data file after "-file"
  };

  /// Which part of the program runs the command. Its result is the exit status.
  enum class Worker {
    Generator,     ///< `operation` of the generator
    DefaultRun,    ///< `wnpaGenerator::generate`; the exit status is 0, whatever it returns
    Help,          ///< `zvkSetup::showHelp`
    RawSender,     ///< `wnpaGenerator::sendNPAData`, with the bytes of the NPA data file
    Certificates,  ///< `CertProc::run`, without a generator
  };

  /// The switch as typed, such as "-ip". Empty for the default run, which has no switch.
  std::string_view name;
  Input input = Input::DevicePath;
  Worker worker = Worker::Generator;
  /// Set for `Worker::Generator`, null for the other workers.
  int (wnpaGenerator::*operation)() = nullptr;
  /// True if a result of -1 is followed by one retry with bare packets, for adapters that refuse
  /// wrappers.
  bool retriesBare = false;
};

/// Returns the mode of a command switch, which must match exactly. For any other text, returns the
/// mode of the default run. The reference is valid until the program ends.
const CommandMode& commandMode(std::string_view name);
