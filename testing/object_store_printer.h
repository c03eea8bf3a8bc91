#pragma once

#include <algorithm>
#include <cstddef>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "testing/object_store.h"
#include "testing/usblp_printer.h"

namespace support {

/// A fixture for tests of method calls to a scripted printer.
class ObjectStorePrinter : public UsblpPrinter {
 protected:
  /// Returns the XML of each call that reached the printer. Expects that every write is a call.
  std::vector<std::string> calls() const {
    const auto headerSize = static_cast<std::ptrdiff_t>(callPackets("").size());
    std::vector<std::string> texts;
    for (const Bytes& write : device.writes) {
      const auto xml = write.begin() + std::min(headerSize, std::ssize(write));
      texts.emplace_back(xml, write.end());
      EXPECT_EQ(write, callPackets(texts.back())) << "not a method call";
    }
    return texts;
  }
};

}  // namespace support
