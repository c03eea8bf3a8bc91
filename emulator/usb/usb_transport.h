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

/// Puts a device where a kernel finds it: plugs it into this machine's virtual USB host controller,
/// or serves it at a TCP port. It can be unplugged and plugged in again.
class UsbTransport : public Transport {
 public:
  /// Plugs the device in; throws `std::runtime_error`. Device and log must outlive the transport.
  UsbTransport(UsbDevice& device, MessageLog& log);
  /// Serves it at a port of 127.0.0.1 (0: any); throws `std::system_error`.
  UsbTransport(UsbDevice& device, MessageLog& log, std::uint16_t port);

  /// Where it is served; 0 when it is plugged into this machine.
  std::uint16_t port() const { return m_Listener ? m_Listener->port() : 0; }
  /// The printer's node, once there is one; not when it is served.
  std::optional<std::string> printerNode() const;

  bool isPluggedIn() const { return m_IsPluggedIn; }
  void plugIn();
  void unplug();

  void sendDue() override;
  void receiveAll() override;
  std::vector<pollfd> awaited() const override;
  std::optional<Clock::time_point> nextDue() const override;

 private:
  void acceptAll();
  /// How an import would end now.
  UsbipStatus offer() const;

  UsbDevice& m_Device;
  MessageLog& m_Log;
  std::optional<LoopbackListener> m_Listener;
  std::unique_ptr<VhciPort> m_Vhci;
  std::list<UsbConnection> m_Connections;
  bool m_IsPluggedIn = false;
  std::optional<Clock::time_point> m_PlugInAt;
};

}  // namespace emulator
