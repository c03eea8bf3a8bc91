// ControlSocket: uses the datagram socket of wpa_supplicant.

#include "emulator/radio/control_socket.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <sys/socket.h>
#include <sys/un.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace emulator {

namespace {

constexpr std::size_t LargestMessage = 4096;

sockaddr_un addressOf(const std::string& path) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  if (path.size() >= sizeof address.sun_path) {
    throw std::system_error(ENAMETOOLONG, std::generic_category(), path);
  }
  std::memcpy(&address.sun_path, path.data(), path.size());
  return address;
}

/// Calls `bind` or `connect` with the path.
template <auto Call>
bool callWith(int socket, const std::string& path) {
  const sockaddr_un address = addressOf(path);
  return Call(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
}

}  // namespace

std::optional<ControlSocket> ControlSocket::connect(const std::string& server,
                                                    const std::string& own) {
  util::UniqueFd socket(::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
  if (!socket) {
    throw std::system_error(errno, std::generic_category(), "socket");
  }
  if (!callWith<::connect>(socket.get(), server)) {
    if (errno == ENOENT || errno == ECONNREFUSED) {
      return std::nullopt;
    }
    throw std::system_error(errno, std::generic_category(), server);
  }
  ::unlink(own.c_str());
  if (!callWith<::bind>(socket.get(), own)) {
    throw std::system_error(errno, std::generic_category(), own);
  }
  return ControlSocket(std::move(socket));
}

void ControlSocket::send(std::string_view command) const {
  [[maybe_unused]] const ssize_t count =
      ::send(m_Socket.get(), command.data(), command.size(), MSG_NOSIGNAL);
}

std::optional<std::string> ControlSocket::receive() const {
  std::array<char, LargestMessage> buffer{};
  const ssize_t count = ::recv(m_Socket.get(), buffer.data(), buffer.size(), 0);
  if (count < 0) {
    return std::nullopt;
  }
  std::string text(buffer.data(), static_cast<std::size_t>(count));
  if (text.starts_with('<')) {
    text.erase(0, text.find('>') + 1);
  }
  return text;
}

}  // namespace emulator
