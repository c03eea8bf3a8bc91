#pragma once

#include <algorithm>
#include <cstddef>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "testing/object_store.h"
#include "testing/usblp_printer.h"

namespace support {

/// Tests against a printer with an object store.
class ObjectStorePrinter : public UsblpPrinter {
 protected:
  /// The XML of the calls that reached the printer.
  std::vector<std::string> calls() const {
    const auto headerSize = static_cast<std::ptrdiff_t>(callPackets("").size());
    std::vector<std::string> texts;
    for (const Bytes& write : device.writes) {
      const auto xml = write.begin() + std::min(headerSize, std::ssize(write));
      texts.emplace_back(xml, write.end());
      EXPECT_EQ(write, callPackets(texts.back())) << "no method call";
    }
    return texts;
  }
};

}  // namespace support
