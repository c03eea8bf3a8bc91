#pragma once

namespace emulator {

/// The folder of the kernel's device files for printers: lp0, lp1, ...
inline constexpr const char* PrinterFolder = "/dev/usb";

}  // namespace emulator
