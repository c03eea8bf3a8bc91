#pragma once

#include <string>
#include <termios.h>

#include "testing/standard_input.h"

namespace faults {

/// A terminal for standard input, at which `input` has been typed. Its attributes are those that
/// the program gets and sets.
class VirtualTerminal {
 public:
  explicit VirtualTerminal(const std::string& input);
  ~VirtualTerminal();
  VirtualTerminal(const VirtualTerminal&) = delete;
  VirtualTerminal& operator=(const VirtualTerminal&) = delete;

  bool echoes() const { return (attributes.c_lflag & ECHO) != 0; }

  static VirtualTerminal* current();

  termios attributes{};
  /// How often the echo was switched off.
  int silences = 0;

 private:
  support::StandardInput m_Input;
};

}  // namespace faults
