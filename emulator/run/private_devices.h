#pragma once

#include <string>

namespace emulator {

/// The path of the printer after `enterPrivateDevices`.
inline constexpr const char* PrivateDevicePath = "/dev/usb/lp0";

/// Moves the calling process into a private mount namespace, in which `PrivateDevicePath` is
/// `device` and /dev/usb contains no other printer. Unless the user is root, the process also
/// enters a private user namespace. The process must have a single thread. Nothing changes outside
/// the namespaces. Throws `std::system_error` with the failed step if the system does not permit
/// this.
void enterPrivateDevices(const std::string& device);

}  // namespace emulator
