#pragma once

#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "testing/generator.h"
#include "testing/output.h"
#include "testing/rows.h"

namespace support {

/// An encoder that takes no running total.
using SettingEncoder = int (wnpaGenerator::*)();

/// Tests of such encoders.
class SettingEncoders : public Generator {
 protected:
  /// Runs an encoder behind a byte that is in the packet already, and expects that it appends
  /// `object`, returns its size and writes `log`.
  void expectObject(SettingEncoder encoder, std::vector<std::string> options, const Bytes& object,
                    const std::string& log) {
    use(std::move(options));
    Bytes before = bytes("EE");
    generator->appendDataToNPA(1, before.data());
    int count = -77;
    EXPECT_EQ(outputOf([&] { count = ((*generator).*encoder)(); }), (Output{"", log}));
    EXPECT_EQ(count, static_cast<int>(object.size()));
    const auto packet = generator->packet();
    EXPECT_EQ(Bytes(packet.begin(), packet.end()), joined({before, object}));
  }
};

/// What an encoder appends and logs for some options.
struct SettingRow : Row {
  SettingEncoder encoder;
  std::vector<std::string> options;
  const char* object;
  const char* log;
};

/// Tests over a table of encoders.
class SettingTable : public SettingEncoders, public testing::WithParamInterface<SettingRow> {
 protected:
  void expectRow() {
    const SettingRow& row = GetParam();
    expectObject(row.encoder, row.options, bytes(row.object), row.log);
  }
};

}  // namespace support
