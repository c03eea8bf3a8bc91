#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "npa/packet.h"

namespace catalogue {

/// Splits a stream of bytes into NPA packets. The bytes may arrive in any pieces.
///
///     PacketReader reader;
///     for (const npa::Bytes& packet : reader.feed(received)) { ... }
class PacketReader {
 public:
  /// Takes the next bytes and returns the packets that are now complete, each with its start byte
  /// and length field. Drops and counts bytes outside a packet.
  std::vector<npa::Bytes> feed(std::span<const npa::Byte> bytes);

  /// Returns the count of bytes of an incomplete packet.
  std::size_t pendingBytes() const { return m_Pending.size(); }

  /// Drops the incomplete packet.
  void dropPending() { m_Pending.clear(); }

  /// Returns how many bytes outside packets have arrived so far.
  std::size_t strayBytes() const { return m_StrayBytes; }

 private:
  npa::Bytes m_Pending;
  std::size_t m_StrayBytes = 0;
};

}  // namespace catalogue
