#include "wifi/console.h"

#include <cerrno>
#include <cstdio>
#include <string>
#include <system_error>
#include <unistd.h>

#include "wifi/shown_text.h"

namespace wifi {

void print(std::string_view text) {
  while (!text.empty()) {
    const ssize_t count = ::write(STDOUT_FILENO, text.data(), text.size());
    // A signal that is only noted ends the wait for the reader of a pipe.
    if (count < 0 && errno != EINTR) {
      throw OutputError(errno, std::generic_category(), "standard output");
    }
    text.remove_prefix(count < 0 ? 0 : static_cast<std::size_t>(count));
  }
}

void ResultOutput::print(std::string_view text) {
  if (!m_Error) {
    try {
      wifi::print(text);
      return;
    } catch (const OutputError& error) {
      m_Error = error;
    }
  }
  std::fwrite(text.data(), 1, text.size(), stderr);
}

void ResultOutput::finish() const {
  if (m_Error) {
    throw OutputError(*m_Error);
  }
}

void showNow(const std::string& text) {
  std::fputs(text.c_str(), stderr);
  std::fflush(stderr);
}

void printError(const Explanation& error) {
  std::string text = "zvkwifi: " + error.message + "\n";
  if (!error.remedy.empty()) {
    text.append(error.remedy).append("\n");
  }
  std::fputs(::isatty(STDERR_FILENO) == 1 ? wrapped(text).c_str() : text.c_str(), stderr);
}

}  // namespace wifi
