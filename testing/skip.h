#pragma once

#include <cstdlib>
#include <gtest/gtest.h>
#include <string_view>

namespace support {

/// Returns whether the environment variable CI is set, to anything but an empty text.
inline bool isCi() {
  const char* const value = std::getenv("CI");
  return value != nullptr && !std::string_view(value).empty();
}

}  // namespace support

/// Ends the test as skipped where the machine does not permit what it needs. In CI the test fails
/// instead: a test that nobody sees missing would be missing for good.
#define SKIP_OUTSIDE_CI(reason) \
  do {                          \
    if (support::isCi()) {      \
      FAIL() << (reason);       \
    }                           \
    GTEST_SKIP() << (reason);   \
  } while (false)
