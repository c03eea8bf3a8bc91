#pragma once

#include <cstdint>

#include "util/unique_fd.h"

namespace emulator {

/// A TCP port that can be reached from this machine only.
class LoopbackListener {
 public:
  /// Listens at a port of 127.0.0.1; 0 takes any. Throws `std::system_error`.
  explicit LoopbackListener(std::uint16_t port);

  std::uint16_t port() const { return m_Port; }
  int descriptor() const { return m_Socket.get(); }

  /// The next connection, which does not block; none when nobody waits.
  util::UniqueFd accept() const;

 private:
  util::UniqueFd m_Socket;
  std::uint16_t m_Port = 0;
};

}  // namespace emulator
