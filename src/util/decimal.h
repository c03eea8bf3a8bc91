#pragma once

#include <string_view>

namespace util {

/// Reads a decimal number like `atoi`: optional white space, an optional sign, then digits. The
/// rest of the text is ignored. Returns 0 if there are no digits. A number outside the range of
/// `int`, which is undefined for `atoi`, yields the nearest limit.
int toInt(std::string_view text);

}  // namespace util
