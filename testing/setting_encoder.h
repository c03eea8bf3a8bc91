#pragma once

#include <gtest/gtest.h>
#include <string>
#include <variant>
#include <vector>

#include "testing/generator.h"
#include "testing/rows.h"
#include "wireless/setting_encodings.h"

namespace support {

/// An encoder of one setting: either an operation, which may take a pointer to a running total, or
/// a `SettingEncoding`.
using SettingEncoder =
    std::variant<Operation, int (wnpaGenerator::*)(int*), const SettingEncoding*>;

/// A fixture for tests of encoders.
class SettingEncoders : public Generator {
 protected:
  /// Runs an encoder on a packet that already contains one byte. Expects that the encoder appends
  /// `object`, returns the size of `object` and logs `log`.
  void expectObject(const SettingEncoder& encoder, std::vector<std::string> options,
                    const Bytes& object, const std::string& log) {
    use(std::move(options));
    Bytes before = bytes("EE");
    generator->appendDataToNPA(1, before.data());
    EXPECT_EQ(resultOf([&] { return encode(encoder); }, output), static_cast<int>(object.size()));
    EXPECT_EQ(output, (Output{"", log}));
    EXPECT_EQ(packet(), joined({before, object}));
  }

  /// Runs an encoder and returns its result. If the encoder takes a pointer to a total, expects
  /// that the total stays unchanged.
  int encode(const SettingEncoder& encoder) {
    if (const auto* const plain = std::get_if<Operation>(&encoder)) {
      return (generator.get()->**plain)();
    }
    if (const auto* const row = std::get_if<const SettingEncoding*>(&encoder)) {
      return generator->encode(**row);
    }
    int total = 1234;
    const int count = (generator.get()->*std::get<1>(encoder))(&total);
    EXPECT_EQ(total, 1234);
    return count;
  }
};

/// A row of a table: an encoder, options, and the setting object and the log lines that the encoder
/// produces with these options.
struct SettingRow : Row {
  SettingEncoder encoder;
  std::vector<std::string> options;
  std::string object;  ///< in hex
  std::string log;
};

/// A fixture for tests with a table of encoders.
class SettingTable : public SettingEncoders, public testing::WithParamInterface<SettingRow> {
 protected:
  void expectRow() {
    const SettingRow& row = GetParam();
    expectObject(row.encoder, row.options, bytes(row.object), row.log);
  }
};

}  // namespace support
