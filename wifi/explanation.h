#pragma once

#include <optional>
#include <string>

#include "session/profile.h"
#include "session/session.h"

namespace wifi {

/// A failure in words, translated.
struct Explanation {
  std::string message;  ///< what happened: a sentence
  std::string remedy;   ///< what to do next: sentences
};

/// Explains why a command on a printer did not succeed. Returns nothing if the command succeeded.
/// `profile` is the profile of `set`, and null for all other commands.
[[nodiscard]] std::optional<Explanation> explain(const session::Report& report,
                                                 const session::Profile* profile);

/// Returns the name of a printer for messages: make and model, or the device if both are unknown.
[[nodiscard]] std::string nameOf(const session::Printer& printer);

/// Returns make, model and device of a printer.
[[nodiscard]] std::string printerText(const session::Printer& printer);

}  // namespace wifi
