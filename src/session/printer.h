#pragma once

#include <optional>
#include <string>

namespace session {

/// The path of a printer on usblp, without its number. The transport opens usblp devices only in
/// this folder.
inline constexpr const char* UsblpPrefix = "/dev/usb/lp";

/// One printer of this machine. An unknown member has no value. A printer that is known only by its
/// path has only `device` and `node`.
struct Printer {
  enum class State { Ready, NoPermission, Busy };

  std::string device;                       ///< for the transport: "/dev/usb/lp0" or "BUS:DEVICE"
  std::string node;                         ///< the device file
  std::optional<std::string> address = {};  ///< "BUS:DEVICE", the numbers that lsusb prints
  std::optional<std::string> port = {};     ///< where it is plugged in: sysfs's name, such as "1-2"
  std::optional<std::string> serial = {};
  std::optional<std::string> make = {};
  std::optional<std::string> model = {};
  State state = State::Ready;
};

}  // namespace session
