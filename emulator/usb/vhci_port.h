#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "emulator/usb/usb_traits.h"
#include "util/unique_fd.h"

namespace emulator {

/// The sysfs folder of the kernel's virtual USB host controller.
inline constexpr const char* VhciFolder = "/sys/devices/platform/vhci_hcd.0";

/// Returns a free port from the text of the controller's file `status`, or nothing if there is
/// none. A line is "hs 0003 004 ...": the kind of hub, the port, the state (4: free), and other
/// columns.
std::optional<unsigned> freeVhciPort(std::string_view status);

/// Returns true if a port is free.
bool isVhciPortFree(std::string_view status, unsigned port);

/// A port of the kernel's virtual USB host controller (module vhci-hcd). A device is plugged into
/// this port during the object's lifetime.
///
///     VhciPort port(UsbSpeed::High);
///     serve(port.takeConnection());
class VhciPort {
 public:
  /// Plugs a device in. Throws `std::runtime_error` on failure. If the user can correct the
  /// failure, the message says how.
  explicit VhciPort(UsbSpeed speed, std::filesystem::path controller = VhciFolder);
  /// Unplugs the device and waits at most 1 s until the kernel has freed the port.
  ~VhciPort();
  VhciPort(const VhciPort&) = delete;
  VhciPort& operator=(const VhciPort&) = delete;

  /// Returns the device's end of the connection with the kernel, which carries USB/IP transfers.
  /// The caller owns the descriptor. If the caller closes it, the device is unplugged too.
  util::UniqueFd takeConnection() { return std::move(m_Connection); }

  /// Returns the path of the printer's device file, such as "/dev/usb/lp0". Returns nothing until
  /// the kernel's printer driver has created it.
  std::optional<std::string> printerNode() const;

 private:
  /// Returns the text of the controller's file `status`.
  std::string status() const;

  std::filesystem::path m_Controller;
  unsigned m_Port = 0;
  util::UniqueFd m_Connection;
};

}  // namespace emulator
