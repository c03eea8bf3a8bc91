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

/// A fixture for tests of the generator, with a scripted printer. Wrap mode is on, as in any new
/// generator: the generator sends its packets in a wrapper.
class Generator : public UsblpPrinter {
 protected:
  /// Creates the generator with the settings of these options.
  void use(std::vector<std::string> options) {
    generator.reset();
    configuration = settings(std::move(options));
    generator = std::make_unique<wnpaGenerator>(&configuration);
  }

  /// Runs an operation and returns its result. Sets `output` to what the operation printed.
  int run(Operation operation) {
    return resultOf([&] { return (generator.get()->*operation)(); }, output);
  }

  /// Returns the packet under construction.
  Bytes packet() const { return {generator->packet().begin(), generator->packet().end()}; }

  configDetails configuration;
  std::unique_ptr<wnpaGenerator> generator;
  Output output;
};

/// A fixture with a generator that has default settings.
class DefaultGenerator : public Generator {
 protected:
  DefaultGenerator() { use({}); }
};

}  // namespace support
