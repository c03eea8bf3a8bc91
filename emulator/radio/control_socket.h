#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "util/unique_fd.h"

namespace emulator {

/// A connection to the control socket of wpa_supplicant: a datagram socket that takes commands and,
/// after ATTACH, sends events.
class ControlSocket {
 public:
  /// Connects to the socket `server`, and receives at the path `own`, which it creates. Returns
  /// nothing if there is no server yet. Throws `std::system_error` on any other failure.
  static std::optional<ControlSocket> connect(const std::string& server, const std::string& own);

  /// Sends a command. An error is ignored: a server that has ended sends no event either.
  void send(std::string_view command) const;

  /// Returns the next event or reply, without the priority that precedes an event. Returns nothing
  /// if none has arrived.
  std::optional<std::string> receive() const;

  int descriptor() const { return m_Socket.get(); }

 private:
  explicit ControlSocket(util::UniqueFd socket) : m_Socket(std::move(socket)) {}

  util::UniqueFd m_Socket;
};

}  // namespace emulator
