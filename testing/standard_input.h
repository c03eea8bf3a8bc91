#pragma once

#include <string>

namespace support {

/// Standard input that holds `text` and then ends, for the life of one test. No terminal.
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
