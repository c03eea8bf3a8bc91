#pragma once

#include <string_view>
#include <system_error>

#include "wifi/explanation.h"

namespace wifi {

/// Standard output cannot be written.
struct OutputError : std::system_error {
  using std::system_error::system_error;
};

/// Writes a result to standard output. Throws `OutputError` if it cannot be written.
void print(std::string_view text);

/// Writes an error to standard error: the program's name, the message, and the remedy on the next
/// line.
void printError(const Explanation& error);

}  // namespace wifi
