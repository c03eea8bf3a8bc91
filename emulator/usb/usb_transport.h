#pragma once

#include <list>
#include <memory>
#include <optional>
#include <string>

#include "emulator/adapter/message_log.h"
#include "emulator/transport/transport.h"
#include "emulator/usb/loopback_listener.h"
#include "emulator/usb/usb_connection.h"
#include "emulator/usb/usb_device.h"
#include "emulator/usb/vhci_port.h"

namespace emulator {

/// Makes a device available to a kernel: plugs the device into this machine's virtual USB host
/// controller, or serves the device over USB/IP on a TCP port. The device can be unplugged and
/// plugged in again.
///
///     UsbTransport transport(device, log, 3240);
///     transport.carry(signals, [](int) { return false; });
class UsbTransport : public Transport {
 public:
  /// Plugs the device into this machine. Throws `std::runtime_error` on failure. Device and log
  /// must outlive the transport.
  UsbTransport(UsbDevice& device, MessageLog& log);
  /// Serves the device on a port of 127.0.0.1. If `port` is 0, the kernel selects one. Throws
  /// `std::system_error` on failure.
  UsbTransport(UsbDevice& device, MessageLog& log, std::uint16_t port);

  /// Returns the TCP port, or 0 if the device is plugged into this machine.
  std::uint16_t port() const { return m_Listener ? m_Listener->port() : 0; }
  /// Returns the path of the printer's device file. Returns nothing until this file exists, or if
  /// the device is served on a port.
  std::optional<std::string> printerNode() const;

  bool isPluggedIn() const { return m_IsPluggedIn; }
  void plugIn();
  void unplug();

  void sendDue() override;
  void receiveAll() override;
  std::vector<pollfd> awaited() const override;
  std::optional<Clock::time_point> nextDue() const override;

 private:
  /// Accepts the connections that wait, up to the limit.
  void acceptAll();
  /// Returns the status that a client would now get for an import.
  UsbipStatus offer() const;

  UsbDevice& m_Device;
  MessageLog& m_Log;
  std::optional<LoopbackListener> m_Listener;
  std::unique_ptr<VhciPort> m_Vhci;
  std::list<UsbConnection> m_Connections;
  bool m_IsPluggedIn = false;
  std::optional<Clock::time_point> m_PlugInAt;  ///< when to plug in again after a fault or restart
};

}  // namespace emulator
