#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "testing/settings.h"
#include "testing/usblp_printer.h"
#include "wireless/wnpa_generator.h"

namespace support {

/// Tests of a generator in front of a scripted printer. Wrap mode is on, as it is in a new one.
class Generator : public UsblpPrinter {
 protected:
  /// Makes the generator for the settings of these options.
  void use(std::vector<std::string> options) {
    generator.reset();
    configuration = settings(std::move(options));
    generator = std::make_unique<wnpaGenerator>(&configuration);
  }

  configDetails configuration;
  std::unique_ptr<wnpaGenerator> generator;
};

}  // namespace support
