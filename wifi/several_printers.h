#pragma once

#include <span>

#include "session/printer.h"
#include "wifi/arguments.h"
#include "wifi/printer_command.h"

namespace wifi {

/// Runs a command on several printers at the same time, each in a separate process, so that a
/// printer that hangs does not hold up the others. Prints each text or JSON line when its printer
/// is done, or one JSON document at the end. Clears the secret of the command's profile as soon as
/// all processes have started. Returns 0 if the command succeeded on all printers, and 9 if it
/// failed on one or more. After a signal, returns 128 plus the number of the signal.
int runOnSeveral(const Arguments& arguments, std::span<const session::Printer> printers,
                 const PrinterCommand& command);

}  // namespace wifi
