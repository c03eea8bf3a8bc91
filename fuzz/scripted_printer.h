#pragma once

#include <cstddef>
#include <vector>

#include "hex_input.h"
#include "testing/virtual_system.h"

namespace fuzz {

/// A printer at /dev/usb/lp0 of a virtual system of its own, that answers from a script. A probe of
/// a silent device costs a second of virtual time and not a thousandth, so that waiting for an
/// answer that never comes is over in few steps.
class ScriptedPrinter {
 public:
  ScriptedPrinter();

  /// Answers the n-th request with the n-th reply, the last one for all that follow, in pieces of
  /// `pieceSize` bytes (0: in one).
  void answer(std::vector<Bytes> replies, std::size_t pieceSize = 0);

  /// Ends the program unless each user has closed the device, and no more requests came than
  /// `mostRequests` within `mostSeconds`.
  void requireOver(std::size_t mostRequests, virtual_system::Microseconds mostSeconds) const;

  virtual_system::System system;
  virtual_system::Device& device = system.device("/dev/usb/lp0");
};

/// What comes with one read each: bytes in pieces of this size, the last one shorter; 0 for one
/// piece.
std::vector<Bytes> inPieces(const Bytes& bytes, std::size_t pieceSize);

/// The reply packet with `content`, at most 65,534 bytes, behind its flag byte.
Bytes replyPacket(const Bytes& content);

}  // namespace fuzz
