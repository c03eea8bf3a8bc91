#include "wifi/console.h"

#include <cerrno>
#include <cstdio>
#include <string>
#include <system_error>
#include <unistd.h>

#include "wifi/shown_text.h"

namespace wifi {

void print(std::string_view text) {
  const bool written = std::fwrite(text.data(), 1, text.size(), stdout) == text.size();
  if (!written || std::fflush(stdout) != 0) {
    throw OutputError(errno, std::generic_category(), "standard output");
  }
}

void printError(const Explanation& error) {
  std::string text = "zvkwifi: " + error.message + "\n";
  if (!error.remedy.empty()) {
    text.append(error.remedy).append("\n");
  }
  std::fputs(::isatty(STDERR_FILENO) == 1 ? wrapped(text).c_str() : text.c_str(), stderr);
}

}  // namespace wifi
