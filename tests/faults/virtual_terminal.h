#pragma once

#include <string>
#include <termios.h>

#include "testing/standard_input.h"

namespace faults {

/// A terminal as standard input, on which `input` has been typed. The program reads and sets the
/// terminal's attributes with tcgetattr and tcsetattr.
class VirtualTerminal {
 public:
  explicit VirtualTerminal(const std::string& input);
  ~VirtualTerminal();
  VirtualTerminal(const VirtualTerminal&) = delete;
  VirtualTerminal& operator=(const VirtualTerminal&) = delete;

  bool echoes() const { return (attributes.c_lflag & ECHO) != 0; }

  /// Returns the existing object of this class, or nullptr if there is none.
  static VirtualTerminal* current();

  termios attributes{};

 private:
  support::StandardInput m_Input;
};

}  // namespace faults
