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
  /// Connects to the socket at the path `server`. Creates the socket at the path `own`, which
  /// receives events and replies. Returns nothing if wpa_supplicant has not created its socket yet.
  /// Throws `std::system_error` on any other failure.
  static std::optional<ControlSocket> connect(const std::string& server, const std::string& own);

  /// Sends a command. Ignores an error: it means that wpa_supplicant has ended, and `Radio` checks
  /// for this end itself.
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
