#pragma once

#include <functional>
#include <string>

#include "session/profile.h"
#include "session/session.h"
#include "wifi/arguments.h"
#include "wifi/json_report.h"
#include "wifi/outcome.h"

namespace wifi {

/// The parts of a command on one printer, for `runOnPrinter`.
struct PrinterCommand {
  Fields fields;
  /// Runs an operation of the session.
  std::function<session::Report(session::Session&)> run;
  /// Returns the text to print if the command succeeds.
  std::function<std::string(const session::Report&)> text;
  session::Profile* profile = nullptr;  ///< only for `set`
};

/// Finds the printers that the arguments name, runs a command on each of them with progress, trace
/// and handling of signals, and prints the results. Returns the exit status. Throws `CommandError`
/// if there is no printer, if a name does not fit exactly one printer, or if two names fit the same
/// printer.
int runOnPrinters(const Arguments& arguments, const PrinterCommand& command);

/// Runs a command on one printer. Prints nothing but progress.
[[nodiscard]] Outcome runOnPrinter(const Arguments& arguments, const session::Printer& printer,
                                   const PrinterCommand& command);

/// Returns the outcome to print for a report. The command took `seconds`.
[[nodiscard]] Outcome outcomeOf(const session::Report& report, const Arguments& arguments,
                                const PrinterCommand& command, double seconds);

/// Returns the command that stores a profile and waits for the confirmation. It refers to both
/// parameters.
[[nodiscard]] PrinterCommand setOf(const Arguments& arguments, session::Profile& profile);

/// Stores settings that are complete and checked, and waits for the confirmation. Clears the secret
/// after it is sent. Prints the result and returns the exit status, as `runOnPrinters` does.
int storeProfile(const Arguments& arguments, session::Profile& profile);

/// Returns the printer that the arguments name, for a command that takes only one printer. Throws
/// `CommandError` unless exactly one printer fits.
[[nodiscard]] session::Printer choosePrinter(const Arguments& arguments);

}  // namespace wifi
