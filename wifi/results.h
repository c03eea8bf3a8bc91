#pragma once

#include <string_view>

#include "session/session.h"

namespace wifi {

/// The exit statuses of the program.
enum ExitStatus : int {
  StatusDone = 0,
  StatusInternalError = 1,  ///< such as: out of memory, or a file cannot be written
  StatusInvalid = 2,        ///< wrong usage, settings or certificate; nothing was changed
  StatusNoPrinter = 3,
  StatusNoPermission = 4,
  StatusBusy = 5,
  StatusRefused = 6,
  StatusNoAnswer = 7,
  StatusNotConfirmed = 8,
  StatusSomeFailed = 9,    ///< there are several printers, and one or more failed
  StatusSignalBase = 128,  ///< a signal ended the command; its number is added
};

/// One row for each result: its word in JSON, and the exit status.
struct ResultRow {
  session::Result result;
  std::string_view word;
  int status;
};

/// Returns the row of a result.
[[nodiscard]] const ResultRow& rowOf(session::Result result);

/// Returns the exit status for the report of a command on one printer. `waited` is true if a
/// confirmation was wanted; `signal` is the signal that has arrived, or 0.
[[nodiscard]] int exitStatusOf(const session::Report& report, bool waited, int signal);

/// Returns the word for a printer's state in JSON.
[[nodiscard]] std::string_view wordOf(session::Printer::State state);

}  // namespace wifi
