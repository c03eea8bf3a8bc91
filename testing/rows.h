#pragma once

#include <gtest/gtest.h>
#include <ostream>
#include <string>

/// Tables of test cases: a row is a struct derived from `Row`, and each row is one test.
namespace support {

/// The base of every row.
struct Row {
  const char* name;  ///< the end of the test's name; letters and digits only

  /// Prints the name of a row. Without this operator GoogleTest would print the bytes of the row,
  /// which differ from run to run.
  friend std::ostream& operator<<(std::ostream& stream, const Row& row) {
    return stream << row.name;
  }
};

/// Returns a row's name, for INSTANTIATE_TEST_SUITE_P.
inline constexpr auto rowName = [](const auto& info) {
  return std::string(info.param.name);
};

}  // namespace support
