#pragma once

#include <concepts>
#include <gtest/gtest.h>
#include <ostream>
#include <string>

/// Tables of test cases: each row has a member `name`, which names its test.
namespace support {

template <typename T>
concept Row = requires(const T& row) {
  { row.name } -> std::convertible_to<const char*>;
};

inline constexpr auto rowName = [](const auto& info) {
  return std::string(info.param.name);
};

/// Shows a row by its name and not, as is the default, by its bytes in memory, which differ from
/// run to run. A test's namespace takes part with `using support::PrintTo;`.
template <Row T>
void PrintTo(const T& row, std::ostream* stream) {
  *stream << row.name;
}

}  // namespace support
