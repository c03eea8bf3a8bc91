#pragma once

#include <span>

#include "session/printer.h"
#include "wifi/arguments.h"
#include "wifi/printer_command.h"

namespace wifi {

/// Runs a command on several printers at the same time, each in a separate process, so that a
/// printer that hangs does not hold up the others. Prints each text or JSON line when its printer
/// is done, or one JSON document at the end. Clears the secret of the command's profile as soon as
/// all processes have started. Returns 0 if all printers succeeded, 9 if some did not, or 128 and
/// the number of a signal.
int runOnSeveral(const Arguments& arguments, std::span<const session::Printer> printers,
                 const PrinterCommand& command);

}  // namespace wifi
