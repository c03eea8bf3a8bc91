#pragma once

#include <poll.h>

#include "catalogue/packet_reader.h"
#include "emulator/usb/usbip_session.h"
#include "util/unique_fd.h"

namespace emulator {

/// A socket and its USB/IP session. `UsbTransport` waits for the events of `awaited`, and then
/// calls `receive` and `send`.
class UsbConnection {
 public:
  /// Takes over the socket. The device must outlive the connection.
  UsbConnection(util::UniqueFd socket, UsbDevice& device, UsbipSession::Phase phase);

  UsbipSession& session() { return m_Session; }
  const UsbipSession& session() const { return m_Session; }

  /// Sends the output of the session, as far as the socket accepts it.
  void send();
  /// Passes the bytes that have arrived to the session. Throws `UsbipError` if the bytes break the
  /// protocol.
  void receive();

  /// Returns true if the other side has closed the connection, or if the socket has failed.
  bool hasEnded() const { return m_HasEnded; }
  /// Returns the socket and the events to wait for.
  pollfd awaited() const;

 private:
  /// Returns true if too many bytes wait to be sent.
  bool isFull() const;

  util::UniqueFd m_Socket;
  UsbipSession m_Session;
  npa::Bytes m_Outgoing;
  bool m_HasEnded = false;
};

}  // namespace emulator
