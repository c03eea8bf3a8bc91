#pragma once

#include "session/machine.h"
#include "wifi/arguments.h"
#include "wifi/printer_command.h"
#include "wifi/usb_monitor.h"

namespace wifi {

/// Runs the command on each printer that is plugged in from now on, each in a separate process,
/// until SIGINT, SIGTERM or SIGHUP arrives. Then waits for the processes. Prints each outcome, and
/// a summary at the end. Ends in the same way if standard output cannot be written, and then throws
/// `OutputError`. Returns 0 if the last attempt with each printer succeeded, otherwise 9.
int runStation(const Arguments& arguments, const PrinterCommand& command, UsbMonitor& monitor,
               const session::Machine& machine = {});

}  // namespace wifi
