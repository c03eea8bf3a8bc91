// Reads and writes on the socket of a USB/IP session, without blocking.

#include "emulator/usb/usb_connection.h"

#include <array>
#include <cerrno>
#include <cstddef>
#include <span>
#include <sys/socket.h>
#include <utility>

namespace emulator {

namespace {

/// The limit of bytes that wait to be sent. While more bytes wait, the connection receives nothing.
constexpr std::size_t MostOutgoing = 1U << 20U;

/// Returns true if `error` means that the call can succeed later.
bool isForLater(int error) {
  return error == EAGAIN || error == EINTR;
}

}  // namespace

UsbConnection::UsbConnection(util::UniqueFd socket, UsbDevice& device, UsbipSession::Phase phase)
    : m_Socket(std::move(socket)), m_Session(device, phase) {}

void UsbConnection::send() {
  const npa::Bytes more = m_Session.takeOutput();
  m_Outgoing.insert(m_Outgoing.end(), more.begin(), more.end());
  std::size_t sent = 0;
  while (sent < m_Outgoing.size()) {
    const auto rest = std::span(m_Outgoing).subspan(sent);
    const ssize_t count =
        ::send(m_Socket.get(), rest.data(), rest.size(), MSG_DONTWAIT | MSG_NOSIGNAL);
    if (count < 0) {
      m_HasEnded = m_HasEnded || !isForLater(errno);
      break;
    }
    sent += static_cast<std::size_t>(count);
  }
  m_Outgoing.erase(m_Outgoing.begin(), m_Outgoing.begin() + static_cast<std::ptrdiff_t>(sent));
}

void UsbConnection::receive() {
  std::array<npa::Byte, 16384> buffer{};
  while (!isFull() && !m_HasEnded) {
    const ssize_t count = ::recv(m_Socket.get(), buffer.data(), buffer.size(), MSG_DONTWAIT);
    if (count < 0 && isForLater(errno)) {
      return;
    }
    if (count <= 0) {
      m_HasEnded = true;
      return;
    }
    m_Session.receive(std::span(buffer).first(static_cast<std::size_t>(count)));
    send();
  }
}

bool UsbConnection::isFull() const {
  return m_Outgoing.size() > MostOutgoing;
}

pollfd UsbConnection::awaited() const {
  const short in = isFull() ? 0 : POLLIN;
  const short out = m_Outgoing.empty() ? 0 : POLLOUT;
  return {m_Socket.get(), static_cast<short>(in | out), 0};
}

}  // namespace emulator
