#pragma once

#include <optional>
#include <string>

namespace emulator {

/// A symbolic link to the emulated device, removed when destroyed if it is still the same.
class DeviceLink {
 public:
  /// Makes a link at `path`, never over something that is there; throws `std::system_error`.
  DeviceLink(std::string path, std::string target);
  ~DeviceLink();
  DeviceLink(const DeviceLink&) = delete;
  DeviceLink& operator=(const DeviceLink&) = delete;

  const std::string& path() const { return m_Path; }

 private:
  std::string m_Path;
  std::string m_Target;
};

/// Links a free printer device name to the emulated device: "/dev/usb/lp" and a number, the highest
/// free one, since the kernel numbers real printers from 0. Makes the folder if it is missing, and
/// removes it when nothing else is in it.
class FreeDeviceLink {
 public:
  /// Throws `std::system_error` when no link can be made.
  explicit FreeDeviceLink(const std::string& target);
  ~FreeDeviceLink();
  FreeDeviceLink(const FreeDeviceLink&) = delete;
  FreeDeviceLink& operator=(const FreeDeviceLink&) = delete;

  const std::string& path() const { return m_Link->path(); }

 private:
  std::optional<DeviceLink> m_Link;
};

}  // namespace emulator
