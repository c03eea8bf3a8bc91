#pragma once

#include <functional>
#include <string>

#include "session/profile.h"
#include "session/session.h"
#include "wifi/arguments.h"
#include "wifi/json_report.h"

namespace wifi {

/// A command on one printer, as a table for `runOnPrinter`.
struct PrinterCommand {
  Fields fields;
  /// Does the work.
  std::function<session::Report(session::Session&)> run;
  /// Returns the result as text, if the command succeeded.
  std::function<std::string(const session::Report&)> text;
  const session::Profile* profile = nullptr;  ///< of `set`
};

/// Finds the printer that the arguments name, runs a command on it with progress, trace and
/// handling of signals, and prints the result. Returns the exit status. Throws `CommandError` if
/// there is no such printer.
int runOnPrinter(const Arguments& arguments, const PrinterCommand& command);

/// Stores settings that are complete and checked, and confirms them. Clears their secret. Prints
/// and returns the result as `runOnPrinter` does.
int storeProfile(const Arguments& arguments, session::Profile& profile);

/// Returns the printer that the arguments name. Throws `CommandError`.
session::Printer choosePrinter(const Arguments& arguments);

}  // namespace wifi
