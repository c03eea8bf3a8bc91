#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "session/machine.h"
#include "testing/files.h"

namespace support {

/// Folders that look like a machine's /sys, /dev and /proc, with the devices and processes that a
/// test adds. As on a real machine, the entries of bus/usb/devices are symbolic links.
///
///     const SysfsTree tree;
///     tree.addDevice("1-2", {.bus = "1", .number = "5", .serial = "X12"});
///     tree.addInterface("1-2:1.0", {.driver = "usblp", .usblp = "usbmisc/lp0"});
///     session::findPrinters(tree.machine());
class SysfsTree {
 public:
  /// The contents of a device's files. If a member has no value, its file does not exist.
  struct Device {
    std::optional<std::string> bus;
    std::optional<std::string> number;
    std::optional<std::string> serial = {};
    std::optional<std::string> manufacturer = {};
    std::optional<std::string> product = {};
  };

  struct Interface {
    std::optional<std::string> interfaceClass = "07";
    std::string driver = {};  ///< the bound driver; empty if there is none
    std::string usblp = {};   ///< the folder that usblp adds to the interface, e.g. "usbmisc/lp0"
    std::optional<std::string> deviceId = {};
  };

  SysfsTree();

  const session::Machine& machine() const { return m_Machine; }

  /// Adds a device with a name like "1-2".
  void addDevice(std::string_view name, const Device& device) const;
  /// Adds an interface with a name like "1-2:1.0".
  void addInterface(std::string_view name, const Interface& interface) const;

  /// Adds the device "1-" and `n`, with bus 1 and number `n`. Its only interface is bound to usblp,
  /// as "lp" and `n`.
  void addUsblpPrinter(int n, const std::string& serial, const std::string& deviceId) const;

  /// Returns the path of a file of a device or interface.
  std::string file(std::string_view name, std::string_view attribute) const;
  /// Writes a file of a device or interface.
  void write(std::string_view name, std::string_view attribute, std::string_view content) const;
  /// Removes the device or interface, but not the link to it.
  void remove(std::string_view name) const;

  /// Returns the path of a device file with a name like "usb/lp0".
  std::string node(std::string_view name) const;
  /// Creates an ordinary file at the path of a device file, and returns the path.
  std::string addNode(std::string_view name) const;

  /// Adds a process that has `file` open.
  void addProcess(std::string_view id, const std::optional<std::string>& name,
                  const std::string& file) const;

 private:
  std::string folder(std::string_view name) const;
  void link(std::string_view name) const;

  TemporaryFolder m_Folder;
  session::Machine m_Machine;
};

}  // namespace support
