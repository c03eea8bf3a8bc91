// UsbTransport: plugs a USB device in and out, and serves the connections to it.

#include "emulator/usb/usb_transport.h"

#include <algorithm>
#include <string>
#include <utility>

namespace emulator {

namespace {

/// The most connections at a time. Further connections wait until one of these has ended.
constexpr std::size_t MostConnections = 16;

}  // namespace

UsbTransport::UsbTransport(UsbDevice& device, MessageLog& log) : m_Device(device), m_Log(log) {
  plugIn();
}

UsbTransport::UsbTransport(UsbDevice& device, MessageLog& log, std::uint16_t port)
    : m_Device(device), m_Log(log), m_Listener(port) {
  plugIn();
}

std::optional<std::string> UsbTransport::printerNode() const {
  return m_Vhci ? m_Vhci->printerNode() : std::nullopt;
}

void UsbTransport::plugIn() {
  m_PlugInAt.reset();
  if (m_IsPluggedIn) {
    return;
  }
  if (!m_Listener) {
    m_Vhci = std::make_unique<VhciPort>(m_Device.traits().speed);
    m_Connections.emplace_back(m_Vhci->takeConnection(), m_Device, UsbipSession::Phase::Transfers);
  }
  m_IsPluggedIn = true;
  m_Log.note("USB: plugged in");
}

void UsbTransport::unplug() {
  m_PlugInAt.reset();
  if (!m_IsPluggedIn) {
    return;
  }
  m_IsPluggedIn = false;
  m_Connections.remove_if(
      [](const UsbConnection& connection) { return connection.session().hasDevice(); });
  m_Vhci.reset();
  m_Device.unplug();
  m_Log.note("USB: unplugged");
}

UsbipStatus UsbTransport::offer() const {
  if (!m_IsPluggedIn) {
    return UsbipStatus::NoDevice;
  }
  const bool isTaken = std::ranges::any_of(m_Connections, [](const UsbConnection& connection) {
    return connection.session().hasDevice();
  });
  return isTaken ? UsbipStatus::Busy : UsbipStatus::Ok;
}

void UsbTransport::acceptAll() {
  while (m_Listener && m_Connections.size() < MostConnections) {
    util::UniqueFd socket = m_Listener->accept();
    if (!socket) {
      return;
    }
    m_Connections.emplace_back(std::move(socket), m_Device, UsbipSession::Phase::Requests);
  }
}

void UsbTransport::sendDue() {
  if (m_PlugInAt && *m_PlugInAt <= Clock::now()) {
    plugIn();
  }
  for (UsbConnection& connection : m_Connections) {
    connection.send();
  }
  if (m_Device.wantsUnplug()) {
    const auto after = m_Device.replugAfter();
    unplug();
    if (after) {
      m_PlugInAt = Clock::now() + *after;
    }
  }
}

void UsbTransport::receiveAll() {
  acceptAll();
  for (auto connection = m_Connections.begin(); connection != m_Connections.end();) {
    bool hasEnded = false;
    connection->session().offer(offer());
    try {
      connection->receive();
      hasEnded = connection->hasEnded();
    } catch (const UsbipError& error) {
      m_Log.note(std::string("USB: disconnected the host: ") + error.what());
      hasEnded = true;
    }
    if (hasEnded && connection->session().hasDevice()) {
      m_Device.unplug();
      m_Log.note("USB: the host has disconnected");
    }
    connection = hasEnded ? m_Connections.erase(connection) : std::next(connection);
  }
}

std::vector<pollfd> UsbTransport::awaited() const {
  std::vector<pollfd> polled;
  if (m_Listener && m_Connections.size() < MostConnections) {
    polled.push_back({m_Listener->descriptor(), POLLIN, 0});
  }
  for (const UsbConnection& connection : m_Connections) {
    polled.push_back(connection.awaited());
  }
  return polled;
}

std::optional<Transport::Clock::time_point> UsbTransport::nextDue() const {
  const auto due = m_Device.nextDue();
  return m_PlugInAt && (!due || *m_PlugInAt < *due) ? m_PlugInAt : due;
}

}  // namespace emulator
