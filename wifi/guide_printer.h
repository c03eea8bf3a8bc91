#pragma once

#include "session/machine.h"
#include "session/printer.h"

namespace wifi {

/// Asks until there is a printer that can be opened. Throws `CommandError` if the user has no
/// permission to open the printer. Also throws `Interrupted` and `EndOfInput`.
[[nodiscard]] session::Printer askForPrinter(const session::Machine& machine = {});

}  // namespace wifi
