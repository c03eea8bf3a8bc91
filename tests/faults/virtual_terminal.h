#pragma once

#include <string>
#include <termios.h>

#include "testing/standard_input.h"

namespace faults {

/// A terminal as standard input, on which `input` has been typed. The program reads and sets its
/// attributes with tcgetattr and tcsetattr.
class VirtualTerminal {
 public:
  explicit VirtualTerminal(const std::string& input);
  ~VirtualTerminal();
  VirtualTerminal(const VirtualTerminal&) = delete;
  VirtualTerminal& operator=(const VirtualTerminal&) = delete;

  bool echoes() const { return (attributes.c_lflag & ECHO) != 0; }

  /// Returns the object that exists, or nullptr.
  static VirtualTerminal* current();

  termios attributes{};

 private:
  support::StandardInput m_Input;
};

}  // namespace faults
