#pragma once

#include <algorithm>
#include <cstddef>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "testing/generator.h"
#include "testing/output.h"
#include "testing/rows.h"

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

  /// Expects the row's object once in the packet of its settings.
  void expectObject() {
    use(GetParam().options);
    const Bytes object = bytes(GetParam().object);
    if (object.empty()) {
      // Nothing but numbers, of nine bytes each: the row's setting is a text or the missing number.
      EXPECT_EQ(sentObjects().size() % 9, 0U);
    } else {
      EXPECT_EQ(occurrences(sentObjects(), object), 1);
    }
  }
};

}  // namespace support
