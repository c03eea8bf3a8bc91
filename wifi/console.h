#pragma once

#include <string_view>

#include "wifi/explanation.h"

namespace wifi {

/// Writes a result to standard output. Throws `std::system_error` if it cannot be written.
void print(std::string_view text);

/// Writes an error to standard error: the program's name, the message, and the remedy on the next
/// line.
void printError(const Explanation& error);

}  // namespace wifi
