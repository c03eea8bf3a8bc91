#pragma once

#include <optional>
#include <string>
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

/// Writes the results of several printers to standard output. If standard output fails, writes this
/// result and the later ones to standard error, because the printers are already changed.
class ResultOutput {
 public:
  void print(std::string_view text);

  /// Returns true if standard output has failed.
  [[nodiscard]] bool hasFailed() const { return m_Error.has_value(); }

  /// Throws the `OutputError` if standard output has failed.
  void finish() const;

 private:
  std::optional<OutputError> m_Error;
};

/// Writes a text to standard error at once, for example a question.
void showNow(const std::string& text);

/// Writes an error to standard error: the program's name, the message, and the remedy on the next
/// line.
void printError(const Explanation& error);

}  // namespace wifi
