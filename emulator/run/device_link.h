#pragma once

#include <optional>
#include <string>

namespace emulator {

/// A symbolic link to the emulated device. The destructor removes the link, unless the link points
/// to another target by then or another file has replaced it.
class DeviceLink {
 public:
  /// Creates the link at `path`. Throws `std::system_error` on failure, also if `path` exists.
  DeviceLink(std::string path, std::string target);
  ~DeviceLink();
  DeviceLink(const DeviceLink&) = delete;
  DeviceLink& operator=(const DeviceLink&) = delete;

  const std::string& path() const { return m_Path; }

 private:
  std::string m_Path;
  std::string m_Target;
};

/// A symbolic link to the emulated device at the highest free name from /dev/usb/lp16 down to
/// /dev/usb/lp0. The search starts at lp16, because the kernel numbers real printers from 0.
/// Creates the folder /dev/usb if it does not exist, and removes it at the end if it is empty.
class FreeDeviceLink {
 public:
  /// Creates the link. Throws `std::system_error` on failure.
  explicit FreeDeviceLink(const std::string& target);
  ~FreeDeviceLink();
  FreeDeviceLink(const FreeDeviceLink&) = delete;
  FreeDeviceLink& operator=(const FreeDeviceLink&) = delete;

  const std::string& path() const { return m_Link->path(); }

 private:
  std::optional<DeviceLink> m_Link;
};

}  // namespace emulator
