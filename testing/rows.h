#pragma once

#include <gtest/gtest.h>
#include <ostream>
#include <string>

/// Tables of test cases.
namespace support {

/// What the rows of all tables begin with.
struct Row {
  const char* name;  ///< of the row's test: letters and digits

  /// Shows a row by its name and not, as is the default, by its bytes in memory, which differ from
  /// run to run.
  friend std::ostream& operator<<(std::ostream& stream, const Row& row) {
    return stream << row.name;
  }
};

inline constexpr auto rowName = [](const auto& info) {
  return std::string(info.param.name);
};

}  // namespace support
