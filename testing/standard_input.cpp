#include "testing/standard_input.h"

#include <array>
#include <cstdio>
#include <stdexcept>
#include <stdio_ext.h>
#include <unistd.h>

namespace support {

StandardInput::StandardInput(const std::string& text) : m_Saved(::dup(STDIN_FILENO)) {
  std::array<int, 2> ends{};
  const auto size = static_cast<ssize_t>(text.size());
  if (::pipe(ends.data()) != 0 || ::write(ends[1], text.data(), text.size()) != size ||
      ::dup2(ends[0], STDIN_FILENO) != STDIN_FILENO) {
    throw std::runtime_error("cannot replace standard input");
  }
  ::close(ends[0]);
  ::close(ends[1]);
  ::__fpurge(stdin);
  std::clearerr(stdin);
}

StandardInput::~StandardInput() {
  ::dup2(m_Saved, STDIN_FILENO);
  ::close(m_Saved);
  ::__fpurge(stdin);
  std::clearerr(stdin);
}

}  // namespace support
