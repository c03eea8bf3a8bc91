#pragma once

#include <stdexcept>
#include <string>

#include "session/profile.h"
#include "session/secret.h"

namespace wifi {

/// The secret cannot be read. The text says why, and never contains a part of the secret.
struct SecretError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// There is no line to read, because the input has ended or a read has failed.
struct EndOfInput : SecretError {
  using SecretError::SecretError;
};

/// Thrown by anything that reads from the terminal after SIGINT, SIGTERM or SIGHUP arrived.
struct Interrupted {};

/// Reads the secret of a profile from `source`: one line, without its line end ("\n" or "\r\n"). If
/// the kind of `source` is `Unspecified`, asks for the secret if standard input is a terminal.
/// Checks the secret. Throws `SecretError` or `Interrupted`.
[[nodiscard]] session::Secret readSecret(const session::Profile& profile,
                                         const session::SecretSource& source);

/// Returns the question for the secret of a network with this security.
[[nodiscard]] const char* secretQuestion(session::Security security);

/// Asks for a secret on standard error and reads a line from standard input without echo. Throws
/// `Interrupted`, `EndOfInput` at the end of input, and `SecretError` for a line that is too long.
[[nodiscard]] session::Secret askForSecret(const char* question);

}  // namespace wifi
