#pragma once

#include <poll.h>

#include "catalogue/packet_reader.h"
#include "emulator/usb/usbip_session.h"
#include "util/unique_fd.h"

namespace emulator {

/// A socket with a USB/IP session behind it.
class UsbConnection {
 public:
  /// The device must outlive the connection.
  UsbConnection(util::UniqueFd socket, UsbDevice& device, UsbipSession::Phase phase);

  UsbipSession& session() { return m_Session; }
  const UsbipSession& session() const { return m_Session; }

  /// Sends what is to be sent, as far as the socket takes it.
  void send();
  /// Takes in what has arrived. Throws `UsbipError` when it breaks the protocol.
  void receive();

  /// Whether the other side is gone.
  bool isOver() const { return m_IsOver; }
  pollfd awaited() const;

 private:
  bool isFull() const;

  util::UniqueFd m_Socket;
  UsbipSession m_Session;
  npa::Bytes m_Outgoing;
  bool m_IsOver = false;
};

}  // namespace emulator
