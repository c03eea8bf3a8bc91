#pragma once

#include <algorithm>
#include <cstddef>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "support/generator.h"
#include "support/output.h"
#include "support/rows.h"

namespace support {

/// One setting encoder: what it appends, returns and logs.
struct EncoderRow : Row {
  int (wnpaGenerator::*encoder)(int*);
  std::vector<std::string> options;
  const char* object;  ///< what is appended
  const char* log;
};

/// Tests that look at the setting objects of a packet.
class Encoders : public Generator {
 protected:
  /// The setting objects of a basic configuration.
  Bytes sentObjects() {
    constexpr std::ptrdiff_t groupingHeader = 7;
    generator->setWrapMode(false);
    outputOf([&] { generator->configBasic(); });
    const Bytes& packet = device.writes.at(0);
    return {packet.begin() + groupingHeader, packet.end()};
  }

  /// How often `object` stands in a row of bytes.
  static int occurrences(const Bytes& all, const Bytes& object) {
    int count = 0;
    for (auto at = all.begin();; ++at, ++count) {
      at = std::search(at, all.end(), object.begin(), object.end());
      if (at == all.end()) {
        return count;
      }
    }
  }
};

/// Tests over a table of encoders.
class Encoder : public Encoders, public testing::WithParamInterface<EncoderRow> {
 protected:
  /// Runs the row's encoder and expects the size of its object, its log, and nothing else.
  void expectCountAndLog() {
    use(GetParam().options);
    int total = 1234;
    int count = -77;
    const auto encode = [&] {
      count = ((*generator).*GetParam().encoder)(&total);
    };
    EXPECT_EQ(outputOf(encode), (Output{"", GetParam().log}));
    EXPECT_EQ(count, static_cast<int>(bytes(GetParam().object).size()));
    EXPECT_EQ(total, 1234);
  }

  /// Expects that the row's encoder appends its object and nothing else, and that the object, if
  /// there is one, stands once in the packet of a basic configuration.
  void expectObject() {
    use(GetParam().options);
    const Bytes object = bytes(GetParam().object);
    int total = 0;
    outputOf([&] { ((*generator).*GetParam().encoder)(&total); });
    const auto packet = generator->packet();
    EXPECT_EQ(Bytes(packet.begin(), packet.end()), object);
    if (!object.empty()) {
      EXPECT_EQ(occurrences(sentObjects(), object), 1);
    }
  }
};

}  // namespace support
