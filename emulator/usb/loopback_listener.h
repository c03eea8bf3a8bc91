#pragma once

#include <cstdint>

#include "util/unique_fd.h"

namespace emulator {

/// Listens on a TCP port that only this machine can reach.
class LoopbackListener {
 public:
  /// Listens on a port of 127.0.0.1. If `port` is 0, the kernel selects one. Throws
  /// `std::system_error` on failure.
  explicit LoopbackListener(std::uint16_t port);

  std::uint16_t port() const { return m_Port; }
  int descriptor() const { return m_Socket.get(); }

  /// Returns the next connection, which is non-blocking, or an empty descriptor if there is none.
  util::UniqueFd accept() const;

 private:
  util::UniqueFd m_Socket;
  std::uint16_t m_Port = 0;
};

}  // namespace emulator
