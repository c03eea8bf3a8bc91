// Finds printers in sysfs.

#include "session/discovery.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <iterator>
#include <map>
#include <system_error>
#include <tuple>
#include <utility>

#include "session/device_access.h"
#include "session/device_id.h"
#include "session/system_files.h"
#include "session/texts.h"
#include "session/usb_address.h"

namespace session {

namespace {

/// An interface of the printer class.
struct Interface {
  std::string folder;
  std::optional<int> usblp;  ///< N of /dev/usb/lpN if usblp has bound the interface
  bool hasDriver;            ///< also true for usbfs: a process has claimed the interface

  /// Orders the interfaces of one device: first interfaces that usblp has bound, then interfaces
  /// without a driver, then interfaces that another driver has bound.
  auto rank() const { return std::tuple(!usblp, usblp, hasDriver, folder); }
};

/// Returns N if `name` is "lpN".
std::optional<int> usblpNumber(std::string_view name) {
  return name.starts_with("lp") ? decimalNumber(name.substr(2)) : std::nullopt;
}

/// Returns N of the usblp device below the interface: "usbmisc/lpN", or "usb/lpN" and "usb:lpN" of
/// old kernels.
std::optional<int> usblpOf(const std::string& interface) {
  constexpr std::string_view oldPrefix = "usb:";
  for (const std::string& name : namesIn(interface)) {
    std::vector<std::string> devices;
    if (name == "usbmisc" || name == "usb") {
      devices = namesIn(std::string(interface).append("/").append(name));
    } else if (name.starts_with(oldPrefix)) {
      devices = {name.substr(oldPrefix.size())};
    }
    for (const std::string& device : devices) {
      if (const auto number = usblpNumber(device)) {
        return number;
      }
    }
  }
  return std::nullopt;
}

bool isLink(const std::string& path) {
  std::error_code error;
  return std::filesystem::is_symlink(path, error);
}

/// Returns the text of a file without control bytes. Returns nothing if the file cannot be read or
/// no text is left.
std::optional<std::string> attribute(const std::string& folder, const char* name) {
  const auto text = readText(folder + "/" + name);
  return text ? printableText(*text) : std::nullopt;
}

std::optional<int> numberAttribute(const std::string& folder, const char* name) {
  const auto text = attribute(folder, name);
  return text ? decimalNumber(*text) : std::nullopt;
}

/// Returns the best printer interface (see `rank`) of each device in `folder`. The keys are the
/// names of the devices.
std::map<std::string, Interface> printerInterfaces(const std::string& folder) {
  std::map<std::string, Interface> found;
  for (const std::string& name : namesIn(folder)) {
    const std::string interface = folder + name;
    const std::size_t colon = name.find(':');
    if (colon == std::string::npos || attribute(interface, "bInterfaceClass") != "07") {
      continue;
    }
    Interface next{interface, usblpOf(interface), isLink(interface + "/driver")};
    Interface& best = found.try_emplace(name.substr(0, colon), next).first->second;
    if (next.rank() < best.rank()) {
      best = std::move(next);
    }
  }
  return found;
}

/// Opens the device to find out whether it can be used. Returns `Ready` if there is no error, and
/// also after an error that is neither a missing permission nor a busy device. A command that opens
/// the device reports such an error.
Printer::State stateOf(const std::string& node) {
  if (openDevice(node)) {
    return Printer::State::Ready;
  }
  switch (kindOfError(errno)) {
    case OpenFailure::Kind::NoPermission:
      return Printer::State::NoPermission;
    case OpenFailure::Kind::Busy:
      return Printer::State::Busy;
    case OpenFailure::Kind::NoSuchPrinter:
    case OpenFailure::Kind::Failed:
      break;
  }
  return Printer::State::Ready;
}

/// Returns the printer of an interface, or nothing if its device is gone.
std::optional<std::pair<UsbAddress, Printer>> describe(const std::string& folder,
                                                       const Interface& interface,
                                                       const Machine& machine, StateTest test) {
  const auto bus = numberAttribute(folder, "busnum");
  const auto number = numberAttribute(folder, "devnum");
  if (!bus || !number) {
    return std::nullopt;
  }
  const UsbAddress address{*bus, *number};
  DeviceId id = parseDeviceId(readText(interface.folder + "/ieee1284_id").value_or(""));
  Printer printer;
  printer.address = address.text();
  printer.make = id.make ? std::move(id.make) : attribute(folder, "manufacturer");
  printer.model = id.model ? std::move(id.model) : attribute(folder, "product");
  printer.serial = attribute(folder, "serial");
  if (!printer.serial) {
    printer.serial = std::move(id.serial);
  }
  if (interface.usblp) {
    const std::string name = std::to_string(*interface.usblp);
    printer.device = UsblpPrefix + name;
    printer.node = machine.devices + "/usb/lp" + name;
  } else {
    printer.device = address.text();
    printer.node = address.node(machine);
  }
  const bool isTaken = !interface.usblp && interface.hasDriver;
  if (isTaken) {
    printer.state = Printer::State::Busy;
  } else if (test == StateTest::Open) {
    printer.state = stateOf(printer.node);
  }
  return std::pair(address, std::move(printer));
}

}  // namespace

std::vector<Printer> findPrinters(const Machine& machine, StateTest test) {
  const std::string folder = machine.sysfs + "/bus/usb/devices/";
  std::vector<std::pair<UsbAddress, Printer>> found;
  for (const auto& [name, interface] : printerInterfaces(folder)) {
    if (auto printer = describe(folder + name, interface, machine, test)) {
      printer->second.port = name;
      found.push_back(std::move(*printer));
    }
  }
  std::ranges::sort(found, {}, &std::pair<UsbAddress, Printer>::first);
  std::vector<Printer> printers;
  std::ranges::transform(found, std::back_inserter(printers),
                         [](auto& pair) { return std::move(pair.second); });
  return printers;
}

}  // namespace session
