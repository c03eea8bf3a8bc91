#pragma once

#include "emulator/adapter/adapter.h"
#include "emulator/adapter/message_log.h"
#include "emulator/run/options.h"

namespace emulator {

/// Has the adapter be a USB printer, as `zvkprinter usb` does: until a signal ends it, or until the
/// command of the options has ended. Returns the exit status. Throws what `UsbTransport` and
/// `CommandProcess` throw.
int beUsbPrinter(const Options& options, Adapter& adapter, MessageLog& log);

}  // namespace emulator
