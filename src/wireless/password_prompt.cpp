// The password prompt. The echo of the terminal is off during the input.

#include "wireless/password_prompt.h"

#include <cstddef>
#include <unistd.h>

#include "util/echo_off.h"
#include "util/output.h"

namespace {

/// Longer than usual passwords, so appending does not reallocate the text. The capacity is also too
/// large for the string object itself, so the text is in heap memory. The program clears heap
/// memory when it frees it.
constexpr std::size_t PasswordReserve = 256;

/// Reads a line byte by byte, because the buffer of a stream would keep a copy of the password.
std::string readLine() {
  std::string line;
  line.reserve(PasswordReserve);
  char c = 0;
  while (::read(STDIN_FILENO, &c, 1) == 1 && c != '\n') {
    line.push_back(c);
  }
  return line;
}

}  // namespace

std::string promptForPassword() {
  util::showProgress("Please provide the password:");
  std::string password;
  {
    const util::EchoOff echoOff;
    password = readLine();
  }
  util::writeAnswer("\n\n");
  return password;
}
