#pragma once

#include <string_view>

#include "wireless/wnpa_generator.h"

/// What a command switch runs.
struct CommandMode {
  /// Where a command's settings come from.
  enum class Input {
    DevicePath,  ///< only the device path from the command line
    Options,     ///< options from the command line, or from a file after "-file"
    NpaFile,     ///< an NPA data file after "-file"
  };

  /// Who does the work.
  enum class Worker {
    Generator,     ///< `operation`
    DefaultRun,    ///< the generator's default run, whose result does not count
    Help,          ///< the help text
    RawSender,     ///< sends the NPA data unchanged
    Certificates,  ///< the certificate commands, which have no generator
  };

  std::string_view name;
  Input input = Input::DevicePath;
  Worker worker = Worker::Generator;
  int (wnpaGenerator::*operation)() = nullptr;
  /// Whether a refusal (-1) is followed by one more attempt with bare packets.
  bool retriesBare = false;
};

/// Returns the mode of a command switch, compared exactly. Any other text runs the generator's
/// default run.
const CommandMode& commandMode(std::string_view name);
