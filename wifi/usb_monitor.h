#pragma once

#include <memory>

namespace wifi {

/// Reports when USB devices have come or gone. Discovery says which.
class UsbMonitor {
 public:
  UsbMonitor() = default;
  virtual ~UsbMonitor() = default;
  UsbMonitor(const UsbMonitor&) = delete;
  UsbMonitor& operator=(const UsbMonitor&) = delete;

  /// Returns a descriptor that can be read when there are events.
  [[nodiscard]] virtual int descriptor() const = 0;

  /// Discards the events that have arrived. Returns true if there were any.
  virtual bool takeEvents() = 0;
};

/// Returns the events of udev, which come after udev has set up the devices. Where no udev runs,
/// returns those of the kernel. Throws `std::system_error`.
[[nodiscard]] std::unique_ptr<UsbMonitor> openUsbMonitor();

}  // namespace wifi
