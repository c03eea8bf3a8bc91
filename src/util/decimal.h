#pragma once

#include <string_view>

namespace util {

/// Reads a decimal number the way `atoi` does: leading white space, an optional sign, digits, and
/// anything may follow. Returns 0 without digits. Unlike `atoi` it is defined for every text: a
/// number outside the range of `int` gives the nearest limit.
int toInt(std::string_view text);

}  // namespace util
