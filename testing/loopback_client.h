#pragma once

#include <arpa/inet.h>
#include <cstddef>
#include <cstdint>
#include <netinet/in.h>
#include <sys/socket.h>

#include "testing/bytes.h"
#include "util/unique_fd.h"

namespace support {

/// A TCP connection to a port of this machine.
class LoopbackClient {
 public:
  explicit LoopbackClient(std::uint16_t port) : m_Socket(::socket(AF_INET, SOCK_STREAM, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    m_IsConnected =
        ::connect(m_Socket.get(), reinterpret_cast<sockaddr*>(&address), sizeof address) == 0;
  }

  bool isConnected() const { return m_IsConnected; }

  /// Sends the bytes. Ignores a failure.
  void send(const Bytes& bytes) const {
    ::send(m_Socket.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL);
  }

  /// Waits for `count` bytes and returns them. Returns fewer if the other side closes the
  /// connection.
  Bytes receive(std::size_t count) const {
    Bytes bytes(count);
    std::size_t size = 0;
    while (size < count) {
      const ssize_t more = ::recv(m_Socket.get(), bytes.data() + size, count - size, 0);
      if (more <= 0) {
        break;
      }
      size += static_cast<std::size_t>(more);
    }
    bytes.resize(size);
    return bytes;
  }

  /// Returns what has arrived, at most 64 KiB, without waiting.
  Bytes receiveNow() const {
    Bytes bytes(65536);
    const ssize_t size = ::recv(m_Socket.get(), bytes.data(), bytes.size(), MSG_DONTWAIT);
    bytes.resize(size > 0 ? static_cast<std::size_t>(size) : 0);
    return bytes;
  }

  /// Returns true if the other side has closed the connection and everything has been read.
  bool isClosed() const {
    std::uint8_t byte = 0;
    return ::recv(m_Socket.get(), &byte, 1, MSG_DONTWAIT | MSG_PEEK) == 0;
  }

 private:
  util::UniqueFd m_Socket;
  bool m_IsConnected = false;
};

}  // namespace support
