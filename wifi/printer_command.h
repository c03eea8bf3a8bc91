#pragma once

#include <functional>
#include <string>

#include "session/profile.h"
#include "session/session.h"
#include "wifi/arguments.h"
#include "wifi/json_report.h"
#include "wifi/outcome.h"

namespace wifi {

/// A command on one printer, as a table for `runOnPrinter`.
struct PrinterCommand {
  Fields fields;
  /// Does the work.
  std::function<session::Report(session::Session&)> run;
  /// Returns the result as text, if the command succeeded.
  std::function<std::string(const session::Report&)> text;
  session::Profile* profile = nullptr;  ///< of `set`
};

/// Finds the printers that the arguments name, runs a command on each of them with progress, trace
/// and handling of signals, and prints the results. Returns the exit status. Throws `CommandError`
/// if there is no such printer.
int runOnPrinters(const Arguments& arguments, const PrinterCommand& command);

/// Runs a command on one printer. Prints nothing except for progress.
[[nodiscard]] Outcome runOnPrinter(const Arguments& arguments, const session::Printer& printer,
                                   const PrinterCommand& command);

/// Returns what is to be printed for a report after `seconds`.
[[nodiscard]] Outcome outcomeOf(const session::Report& report, const Arguments& arguments,
                                const PrinterCommand& command, double seconds);

/// Stores settings that are complete and checked, and confirms them. Clears their secret. Prints
/// and returns the result as `runOnPrinters` does.
int storeProfile(const Arguments& arguments, session::Profile& profile);

/// Returns the printer that the arguments name, for a command that takes one. Throws
/// `CommandError`.
[[nodiscard]] session::Printer choosePrinter(const Arguments& arguments);

}  // namespace wifi
