#pragma once

#include <cstddef>
#include <vector>

#include "hex_input.h"
#include "testing/virtual_system.h"

namespace fuzz {

/// A printer at /dev/usb/lp0 in a separate virtual system. It sends the replies of a script:
///
///     fuzz::ScriptedPrinter printer;
///     printer.answer({fuzz::replyPacket({0xE0, 0x01})});
///     runCodeUnderTest();
///     printer.requireEnded(1, 10);
///
/// A probe of a silent device takes 1 s of virtual time instead of 1 ms, so a wait for a reply that
/// never arrives ends after a few steps.
class ScriptedPrinter {
 public:
  ScriptedPrinter();

  /// Answers the n-th request with the n-th reply. If there are more requests than replies, answers
  /// the further requests with the last reply. A reply arrives in pieces of `pieceSize` bytes (0:
  /// in one piece).
  void answer(std::vector<Bytes> replies, std::size_t pieceSize = 0);

  /// Ends the program unless the device is closed, at most `mostRequests` requests have arrived and
  /// at most `mostSeconds` seconds of virtual time have passed.
  void requireEnded(std::size_t mostRequests, virtual_system::Microseconds mostSeconds) const;

  virtual_system::System system;
  virtual_system::Device& device = system.device("/dev/usb/lp0");
};

/// Returns the bytes in pieces of this size (0: in one piece). The last piece may be shorter. Each
/// read returns one piece.
std::vector<Bytes> inPieces(const Bytes& bytes, std::size_t pieceSize);

/// Returns a reply packet with `content` after its flag byte. The content has at most 65,534 bytes.
Bytes replyPacket(const Bytes& content);

}  // namespace fuzz
