#pragma once

#include <chrono>
#include <string>

#include "session/session.h"

namespace wifi {

/// Shows on standard error what the program is doing. On a terminal it overwrites one line, which
/// also shows the seconds since the start. Otherwise it writes one line for each step.
class Progress {
 public:
  /// If `quiet` is true, the object shows nothing.
  explicit Progress(bool quiet);
  /// Removes the line.
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  void show(session::Step step);
  void showText(const std::string& text);

  /// Writes the line again with the present seconds. Called for each new step and before each
  /// pause.
  void update();

  /// Removes the line from the terminal, before another text is written there.
  void clear();

  /// Returns the seconds since the start.
  [[nodiscard]] double seconds() const;

 private:
  bool m_Quiet;
  bool m_OnTerminal;
  std::string m_Text;
  std::size_t m_Shown = 0;  ///< columns of the line that is on the terminal
  std::chrono::steady_clock::time_point m_Start = std::chrono::steady_clock::now();
};

}  // namespace wifi
