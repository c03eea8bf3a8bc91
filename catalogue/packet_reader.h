#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "npa/packet.h"

namespace catalogue {

/// Cuts a stream of bytes, which may arrive in any pieces, into NPA packets.
class PacketReader {
 public:
  /// Takes the next bytes and returns the packets that are complete now, start byte and length
  /// included. Bytes outside a packet are dropped and counted.
  std::vector<npa::Bytes> feed(std::span<const npa::Byte> bytes);

  /// How many bytes of an incomplete packet wait for the rest.
  std::size_t pendingBytes() const { return m_Pending.size(); }

  /// Drops them.
  void dropPending() { m_Pending.clear(); }

  /// How many bytes stood outside any packet so far.
  std::size_t strayBytes() const { return m_StrayBytes; }

 private:
  npa::Bytes m_Pending;
  std::size_t m_StrayBytes = 0;
};

}  // namespace catalogue
