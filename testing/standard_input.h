#pragma once

#include <string>

namespace support {

/// Replaces standard input by a pipe that contains `text`. The destructor restores standard input.
class StandardInput {
 public:
  explicit StandardInput(const std::string& text);
  ~StandardInput();
  StandardInput(const StandardInput&) = delete;
  StandardInput& operator=(const StandardInput&) = delete;

 private:
  int m_Saved;
};

}  // namespace support
