#pragma once

#include <functional>
#include <string>

#include "session/profile.h"
#include "session/session.h"
#include "wifi/arguments.h"
#include "wifi/json_report.h"

namespace wifi {

/// The parts of a command on one printer, for `runOnPrinter`.
struct PrinterCommand {
  Fields fields;
  /// Does the work.
  std::function<session::Report(session::Session&)> run;
  /// Returns the text to print if the command succeeds.
  std::function<std::string(const session::Report&)> text;
  const session::Profile* profile = nullptr;  ///< only for `set`
};

/// Finds the printer that the arguments name, runs a command on it with progress, trace and
/// handling of signals, and prints the result. Returns the exit status. Throws `CommandError`
/// unless exactly one printer fits.
int runOnPrinter(const Arguments& arguments, const PrinterCommand& command);

/// Stores settings that are complete and checked, and waits for the confirmation. Clears the secret
/// after it is sent. Prints the result and returns the exit status, as `runOnPrinter` does.
int storeProfile(const Arguments& arguments, session::Profile& profile);

/// Returns the printer that the arguments name. Throws `CommandError` unless exactly one printer
/// fits.
session::Printer choosePrinter(const Arguments& arguments);

}  // namespace wifi
