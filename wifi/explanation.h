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

/// Explains why a command on a printer did not succeed. Returns nothing if it did. `profile` is
/// that of `set`, otherwise null.
[[nodiscard]] std::optional<Explanation> explain(const session::Report& report,
                                                 const session::Profile* profile);

/// Returns how a printer is called in messages: make and model, or its device.
[[nodiscard]] std::string nameOf(const session::Printer& printer);

}  // namespace wifi
