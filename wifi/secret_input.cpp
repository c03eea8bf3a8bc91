#include "wifi/secret_input.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

#include "util/echo_off.h"
#include "util/format.h"
#include "util/unique_fd.h"
#include "wifi/signals.h"
#include "wifi/translation.h"

namespace wifi {

namespace {

using Kind = session::SecretSource::Kind;

/// The largest size of a line in bytes. Every valid secret is shorter. A longer line is an error,
/// so that a wrong file is noticed.
constexpr std::size_t LongestLine = 1024;

/// The signals that a terminal can send and that have no handler in this program.
constexpr std::array SignalsAtPrompt = {SIGQUIT, SIGTSTP};

/// Reads a line byte by byte, so that no buffer keeps a copy and the bytes after the line stay
/// unread.
session::Secret readLine(int descriptor, const std::string& name) {
  session::Secret line;
  std::size_t size = 0;
  for (;;) {
    char c = 0;
    if (!Interruption::waitForInput(descriptor)) {
      throw Interrupted();
    }
    const ssize_t count = ::read(descriptor, &c, 1);
    if (count < 0 && errno == EINTR) {
      continue;
    }
    if (count < 0) {
      throw EndOfInput(name + ": " + std::strerror(errno));
    }
    if (count == 0 && size == 0) {
      throw EndOfInput(
          util::formatted(tr("%s: expected a line with the secret, found none"), name.c_str()));
    }
    if (count == 0 || c == '\n') {
      break;
    }
    if (++size > LongestLine) {
      throw SecretError(
          util::formatted(tr("%s: the first line is too long for a secret"), name.c_str()));
    }
    line.append(c);
  }
  if (line.text().ends_with('\r')) {
    return session::Secret(line.text().substr(0, line.text().size() - 1));
  }
  return line;
}

session::Secret readFile(const std::string& path) {
  const util::UniqueFd file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY));
  if (file.get() < 0) {
    throw SecretError(path + ": " + std::strerror(errno));
  }
  return readLine(file.get(), path);
}

session::Secret readFrom(const session::Profile& profile, const session::SecretSource& source) {
  switch (source.kind) {
    case Kind::File:
      return readFile(source.path);
    case Kind::Descriptor:
      return readLine(source.descriptor, util::formatted("fd:%d", source.descriptor));
    case Kind::Inline:
      return source.secret;
    case Kind::Prompt:
    case Kind::Unspecified:
      break;
  }
  if (source.kind == Kind::Unspecified && ::isatty(STDIN_FILENO) != 1) {
    throw SecretError(
        tr("this security needs a secret; use --password-from=file:PATH or "
           "--password-from=fd:NUMBER"));
  }
  return askForSecret(secretQuestion(profile.security));
}

}  // namespace

const char* secretQuestion(session::Security security) {
  switch (security) {
    case session::Security::Wep:
      return tr("WEP key: ");
    case session::Security::Enterprise:
      return tr("Password: ");
    case session::Security::Wpa:
    case session::Security::Open:
      break;
  }
  return tr("Passphrase or key: ");
}

session::Secret askForSecret(const char* question) {
  std::fputs(question, stderr);
  std::fflush(stderr);
  const auto endLine = [] {
    std::fputs("\n", stderr);
  };
  try {
    const util::EchoOff echoOff(SignalsAtPrompt);
    session::Secret secret = readLine(STDIN_FILENO, tr("standard input"));
    endLine();
    return secret;
  } catch (...) {
    endLine();
    throw;
  }
}

session::Secret readSecret(const session::Profile& profile, const session::SecretSource& source) {
  session::Secret secret = readFrom(profile, source);
  if (const char* const expected = session::checkSecret(profile, secret.text())) {
    // TRANSLATORS: what follows is what is allowed, such as "8 to 63 characters".
    throw SecretError(util::formatted(tr("the secret is not valid: expected %s"), tr(expected)));
  }
  return secret;
}

}  // namespace wifi
