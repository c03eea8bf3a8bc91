#pragma once

#include <string>

namespace emulator {

/// Where a program sees the printer after `enterPrivateDevices`.
inline constexpr const char* PrivateDevicePath = "/dev/usb/lp0";

/// Moves the calling process, which must have one thread, into a mount namespace of its own (and a
/// user namespace when it is not root's) in which `PrivateDevicePath` is `device` and no other
/// printer is to be seen. Nothing changes outside. Throws `std::system_error`, whose text names the
/// step, when the system does not permit it.
void enterPrivateDevices(const std::string& device);

}  // namespace emulator
