#pragma once

#include "session/session.h"
#include "wifi/arguments.h"
#include "wifi/progress.h"
#include "wifi/signals.h"
#include "wifi/trace.h"

namespace wifi {

/// Handles signals, shows the progress and writes the trace while a command works with a printer.
/// The arguments determine whether progress is shown and whether a trace is written.
class CommandRun {
 public:
  /// Throws `std::system_error` if the trace file cannot be opened.
  explicit CommandRun(const Arguments& arguments)
      : m_Trace(arguments.traceFile, arguments.verbose),
        m_Progress(arguments.quiet || arguments.verbose) {}

  /// Returns the hooks for a session. The hooks refer to this object.
  [[nodiscard]] session::Session::Hooks hooks() {
    return {
        .onStep = [this](session::Step step) { m_Progress.show(step); },
        .onTransfer = [this](auto direction, auto bytes) { m_Trace.transfer(direction, bytes); },
        .isInterrupted =
            [] {
              return Interruption::signal() != 0;
            }};
  }

  Progress& progress() { return m_Progress; }

 private:
  Interruption m_Interruption;
  Trace m_Trace;
  Progress m_Progress;
};

}  // namespace wifi
