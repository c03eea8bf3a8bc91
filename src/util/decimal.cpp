// Decimal numbers in texts, read like atoi but without its undefined behaviour.

#include "util/decimal.h"

#include <algorithm>
#include <cstdint>
#include <limits>

namespace util {

int toInt(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(" \t\n\v\f\r"), text.size()));
  const bool negative = text.starts_with('-');
  if (negative || text.starts_with('+')) {
    text.remove_prefix(1);
  }
  constexpr std::int64_t largest = std::numeric_limits<int>::max();
  const std::int64_t limit = negative ? largest + 1 : largest;
  // Ten times the largest `int` fits into 64 bits, so no step overflows.
  std::int64_t magnitude = 0;
  for (const char c : text) {
    if (c < '0' || c > '9') {
      break;
    }
    magnitude = std::min(magnitude * 10 + (c - '0'), limit);
  }
  return static_cast<int>(negative ? -magnitude : magnitude);
}

}  // namespace util
