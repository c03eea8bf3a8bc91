#pragma once

#include "emulator/adapter/adapter.h"
#include "emulator/adapter/message_log.h"
#include "emulator/run/options.h"
#include "emulator/transport/transport.h"

namespace emulator {

/// Runs `zvkprinter usb`: serves the adapter as a USB printer until the command has ended or,
/// without a command, until a signal ends zvkprinter. Returns the exit status. Throws the
/// exceptions of `UsbTransport` and `CommandProcess`, and `std::runtime_error` if the printer's
/// node does not appear within 20 s. `companion` runs alongside, unless it is null.
int runUsbPrinter(const Options& options, Adapter& adapter, MessageLog& log, Activity* companion);

}  // namespace emulator
