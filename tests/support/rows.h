#pragma once

#include <gtest/gtest.h>
#include <string>

namespace support {

/// Names the tests of a table: each row has a member `name`.
inline constexpr auto rowName = [](const auto& info) {
  return std::string(info.param.name);
};

}  // namespace support
