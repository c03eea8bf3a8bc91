#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "testing/output.h"
#include "testing/settings.h"
#include "testing/usblp_printer.h"
#include "wireless/wnpa_generator.h"

namespace support {

/// An operation of the generator without parameters.
using Operation = int (wnpaGenerator::*)();

/// Tests of a generator in front of a scripted printer. Wrap mode is on, as it is in a new one.
class Generator : public UsblpPrinter {
 protected:
  /// Makes the generator for the settings of these options.
  void use(std::vector<std::string> options) {
    generator.reset();
    configuration = settings(std::move(options));
    generator = std::make_unique<wnpaGenerator>(&configuration);
  }

  /// Runs an operation, stores what it wrote in `output` and returns its result.
  int run(Operation operation) {
    return resultOf([&] { return (generator.get()->*operation)(); }, output);
  }

  /// The packet under construction.
  Bytes packet() const { return {generator->packet().begin(), generator->packet().end()}; }

  configDetails configuration;
  std::unique_ptr<wnpaGenerator> generator;
  Output output;
};

/// The same with default settings.
class DefaultGenerator : public Generator {
 protected:
  DefaultGenerator() { use({}); }
};

}  // namespace support
