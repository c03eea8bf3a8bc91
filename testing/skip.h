#pragma once

#include <cstdlib>
#include <gtest/gtest.h>
#include <string_view>

namespace support {

/// Returns true if the environment variable CI is set and not empty.
inline bool isCi() {
  const char* const value = std::getenv("CI");
  return value != nullptr && !std::string_view(value).empty();
}

}  // namespace support

/// Skips a test that cannot run on this machine. In CI the test fails instead, because otherwise
/// nobody would notice that the test never runs.
#define SKIP_OUTSIDE_CI(reason) \
  do {                          \
    if (support::isCi()) {      \
      FAIL() << (reason);       \
    }                           \
    GTEST_SKIP() << (reason);   \
  } while (false)
