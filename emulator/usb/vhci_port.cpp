// VhciPort: uses the files of the kernel module vhci-hcd in sysfs.

#include "emulator/usb/vhci_port.h"

#include <array>
#include <cerrno>
#include <chrono>
#include <fcntl.h>
#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>
#include <sys/socket.h>
#include <system_error>
#include <thread>
#include <unistd.h>
#include <utility>

#include "emulator/usb/printer_folder.h"
#include "emulator/usb/usbip_messages.h"

namespace emulator {

namespace {

namespace fs = std::filesystem;

/// The state of a free port. The kernel calls it VDEV_ST_NULL.
constexpr unsigned FreeState = 4;
/// The start of the lines for ports of full and high speed. The lines of faster ports begin with
/// "ss".
constexpr std::string_view OurHub = "hs";

/// Calls `use` with the port and the state of each line for `OurHub`.
template <typename Use>
void forEachPort(std::string_view status, Use use) {
  std::istringstream lines{std::string(status)};
  for (std::string line; std::getline(lines, line);) {
    std::istringstream words(line);
    std::string hub;
    unsigned port = 0;
    unsigned state = 0;
    if (words >> hub >> port >> state && hub == OurHub) {
      use(port, state);
    }
  }
}

/// Writes a sysfs file in one call, as sysfs requires. Returns 0 or the value of errno.
int writeAtOnce(const fs::path& path, const std::string& text) {
  const util::UniqueFd file(::open(path.c_str(), O_WRONLY | O_CLOEXEC));
  const bool isDone = file && ::write(file.get(), text.data(), text.size()) >= 0;
  return isDone ? 0 : errno;
}

}  // namespace

std::optional<unsigned> freeVhciPort(std::string_view status) {
  std::optional<unsigned> found;
  forEachPort(status, [&](unsigned port, unsigned state) {
    if (!found && state == FreeState) {
      found = port;
    }
  });
  return found;
}

bool isVhciPortFree(std::string_view status, unsigned port) {
  bool isFree = false;
  forEachPort(status, [&](unsigned number, unsigned state) {
    isFree = isFree || (number == port && state == FreeState);
  });
  return isFree;
}

VhciPort::VhciPort(UsbSpeed speed, fs::path controller) : m_Controller(std::move(controller)) {
  if (!fs::exists(m_Controller / "attach")) {
    throw std::runtime_error((m_Controller / "attach").string() +
                             ": no virtual USB host controller"
                             "\nLoad its kernel module: modprobe vhci-hcd");
  }
  const std::optional<unsigned> port = freeVhciPort(status());
  if (!port) {
    throw std::runtime_error(
        "the virtual USB host controller has no free port"
        "\nDetach one of its devices: usbip detach");
  }
  m_Port = *port;
  std::array<int, 2> ends{};
  if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0) {
    throw std::system_error(errno, std::generic_category(), "socketpair");
  }
  m_Connection = util::UniqueFd(ends[0]);
  // The kernel keeps its own reference to this end.
  const util::UniqueFd kernelsEnd(ends[1]);
  std::ostringstream line;
  line << m_Port << ' ' << kernelsEnd.get() << ' ' << UsbipDeviceId << ' ' << usbipSpeed(speed);
  const int error = writeAtOnce(m_Controller / "attach", line.str());
  if (error == EACCES || error == EPERM || error == EROFS) {
    throw std::runtime_error((m_Controller / "attach").string() + ": " +
                             std::generic_category().message(error) +
                             "\nRun zvkprinter as root to plug the printer in.");
  }
  if (error != 0) {
    throw std::system_error(error, std::generic_category(), (m_Controller / "attach").string());
  }
}

VhciPort::~VhciPort() {
  constexpr int tries = 100;
  constexpr std::chrono::milliseconds pause(10);
  m_Connection.reset();
  writeAtOnce(m_Controller / "detach", std::to_string(m_Port));
  for (int i = 0; i < tries && !isVhciPortFree(status(), m_Port); ++i) {
    std::this_thread::sleep_for(pause);
  }
}

std::string VhciPort::status() const {
  std::ifstream file(m_Controller / "status");
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

std::optional<std::string> VhciPort::printerNode() const {
  // The path is .../usb3/3-1/3-1:1.0/usbmisc/lp0. In this path the ports of the hub are counted
  // from 1, and `m_Port` is counted from 0.
  std::error_code error;
  for (const auto& bus : fs::directory_iterator(m_Controller, error)) {
    const std::string name = bus.path().filename();
    if (!name.starts_with("usb")) {
      continue;
    }
    const std::string device = name.substr(3) + "-" + std::to_string(m_Port + 1);
    const fs::path nodes = bus.path() / device / (device + ":1.0") / "usbmisc";
    for (const auto& node : fs::directory_iterator(nodes, error)) {
      fs::path path = PrinterFolder / node.path().filename();
      if (fs::exists(path)) {
        return path;
      }
    }
  }
  return std::nullopt;
}

}  // namespace emulator
