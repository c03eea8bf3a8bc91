#include "wifi/usb_monitor.h"

#include <cerrno>
#include <libudev.h>
#include <system_error>
#include <unistd.h>

namespace wifi {

namespace {

/// Frees an object of libudev.
struct Release {
  void operator()(udev* context) const { ::udev_unref(context); }
  void operator()(udev_monitor* monitor) const { ::udev_monitor_unref(monitor); }
  void operator()(udev_device* device) const { ::udev_device_unref(device); }
};

template <typename T>
using Owned = std::unique_ptr<T, Release>;

/// udev's own programs take this file as the sign that it runs.
constexpr const char* SignOfUdev = "/run/udev/control";

class UdevMonitor : public UsbMonitor {
 public:
  UdevMonitor() : m_Context(::udev_new()) {
    const char* const source = ::access(SignOfUdev, F_OK) == 0 ? "udev" : "kernel";
    if (m_Context) {
      m_Monitor.reset(::udev_monitor_new_from_netlink(m_Context.get(), source));
    }
    // "usbmisc" has the devices of usblp.
    for (const char* const subsystem : {"usb", "usbmisc"}) {
      require(m_Monitor && ::udev_monitor_filter_add_match_subsystem_devtype(
                               m_Monitor.get(), subsystem, nullptr) >= 0);
    }
    require(::udev_monitor_enable_receiving(m_Monitor.get()) >= 0);
  }

  int descriptor() const override { return ::udev_monitor_get_fd(m_Monitor.get()); }

  bool takeEvents() override {
    bool any = false;
    errno = 0;
    while (Owned<udev_device>(::udev_monitor_receive_device(m_Monitor.get()))) {
      any = true;
    }
    // Events were lost because there were too many.
    return any || errno == ENOBUFS;
  }

 private:
  static void require(bool condition) {
    if (!condition) {
      throw std::system_error(errno, std::generic_category(), "libudev");
    }
  }

  Owned<udev> m_Context;
  Owned<udev_monitor> m_Monitor;
};

}  // namespace

std::unique_ptr<UsbMonitor> openUsbMonitor() {
  return std::make_unique<UdevMonitor>();
}

}  // namespace wifi
