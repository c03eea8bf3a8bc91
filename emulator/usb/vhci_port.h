#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "emulator/usb/usb_traits.h"
#include "util/unique_fd.h"

namespace emulator {

/// Where the kernel has its virtual USB host controller.
inline constexpr const char* VhciFolder = "/sys/devices/platform/vhci_hcd.0";

/// A free port for a device of that speed, as the controller's file `status` tells, or nothing. Its
/// lines are "hs 0003 004 ...": the kind of hub, the port, the state (4: free), ...
std::optional<unsigned> freeVhciPort(std::string_view status);

/// Whether a port is free.
bool isVhciPortFree(std::string_view status, unsigned port);

/// A port of the kernel's virtual USB host controller (module vhci-hcd), where a device is plugged
/// in while the object lives.
class VhciPort {
 public:
  /// Plugs a device in; throws `std::runtime_error`, whose text says what is missing.
  explicit VhciPort(UsbSpeed speed, std::filesystem::path controller = VhciFolder);
  /// Unplugs it, and waits until the kernel has noticed, for a second at most.
  ~VhciPort();
  VhciPort(const VhciPort&) = delete;
  VhciPort& operator=(const VhciPort&) = delete;

  /// Gives away the device's end of the connection with the kernel, which speaks USB/IP transfers;
  /// closing it unplugs the device, too.
  util::UniqueFd takeConnection() { return std::move(m_Connection); }

  /// The printer's node, such as "/dev/usb/lp0", once the kernel's printer driver has made it.
  std::optional<std::string> printerNode() const;

 private:
  std::string status() const;

  std::filesystem::path m_Controller;
  unsigned m_Port = 0;
  util::UniqueFd m_Connection;
};

}  // namespace emulator
