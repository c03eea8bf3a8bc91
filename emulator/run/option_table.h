#pragma once

#include <span>

#include "catalogue/option_parser.h"
#include "emulator/run/options.h"

namespace emulator {

using Command = catalogue::Command<Options>;
using Option = catalogue::Option<Options>;
using OptionGroup = catalogue::OptionGroup<Options>;

/// Returns the commands. The first argument of zvkprinter selects one of them.
std::span<const Command> commands();

/// Returns all options: those of the adapter, of the USB device, and of the program.
std::span<const OptionGroup> optionGroups();

}  // namespace emulator
