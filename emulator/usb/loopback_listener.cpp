// The listening socket on 127.0.0.1.

#include "emulator/usb/loopback_listener.h"

#include <cerrno>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <string>
#include <sys/socket.h>
#include <system_error>

namespace emulator {

namespace {

/// How many connections may wait for `accept`.
constexpr int Backlog = 8;
constexpr int On = 1;

/// Throws `std::system_error` if a system call failed.
void check(int result, const char* what) {
  if (result < 0) {
    throw std::system_error(errno, std::generic_category(), what);
  }
}

}  // namespace

LoopbackListener::LoopbackListener(std::uint16_t port)
    : m_Socket(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0)) {
  check(m_Socket.get(), "socket");
  // Allows a port that an earlier printer has just closed.
  check(::setsockopt(m_Socket.get(), SOL_SOCKET, SO_REUSEADDR, &On, sizeof On), "setsockopt");
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(port);
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t size = sizeof address;
  auto* const generic = reinterpret_cast<sockaddr*>(&address);
  check(::bind(m_Socket.get(), generic, size),
        ("port " + std::to_string(port) + " of 127.0.0.1").c_str());
  check(::listen(m_Socket.get(), Backlog), "listen");
  check(::getsockname(m_Socket.get(), generic, &size), "getsockname");
  m_Port = ntohs(address.sin_port);
}

util::UniqueFd LoopbackListener::accept() const {
  util::UniqueFd connection(
      ::accept4(m_Socket.get(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK));
  if (connection) {
    // The host waits for the few bytes at the end of a transfer, so the socket must not hold them
    // back.
    ::setsockopt(connection.get(), IPPROTO_TCP, TCP_NODELAY, &On, sizeof On);
  }
  return connection;
}

}  // namespace emulator
