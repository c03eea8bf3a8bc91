// ScriptedPrinter: sends the replies of a script. Other functions make reply packets and cut them
// into pieces.

#include "scripted_printer.h"

#include <algorithm>
#include <memory>
#include <utility>

#include "fuzz_target.h"
#include "npa/packet.h"
#include "testing/packets.h"

namespace fuzz {

using virtual_system::Microseconds;
using virtual_system::Second;

ScriptedPrinter::ScriptedPrinter() {
  // Advances the clock to the next arrival of bytes, but by at most 1 s. If none arrive in this
  // time, the wait times out.
  device.readSelectResult = [this] {
    const Microseconds next =
        device.arrivals.empty() ? system.now() + 2 * Second : device.arrivals.front().at;
    system.advance(std::clamp<Microseconds>(next - system.now(), 0, Second));
    return next <= system.now() ? 1 : 0;
  };
}

void ScriptedPrinter::answer(std::vector<Bytes> replies, std::size_t pieceSize) {
  device.onWrite = [this, replies = std::move(replies), pieceSize,
                    next = std::size_t{0}](const Bytes& /*request*/) mutable {
    for (Bytes& piece : inPieces(replies[next], pieceSize)) {
      device.reply(std::move(piece));
    }
    next = std::min(next + 1, replies.size() - 1);
  };
}

void ScriptedPrinter::requireEnded(std::size_t mostRequests, Microseconds mostSeconds) const {
  require(!device.isOpen);
  require(device.opens == device.closes);
  require(device.writes.size() <= mostRequests);
  require(system.now() <= mostSeconds * Second);
}

std::vector<Bytes> inPieces(const Bytes& bytes, std::size_t pieceSize) {
  std::vector<Bytes> pieces;
  const std::size_t size = pieceSize == 0 ? bytes.size() : pieceSize;
  for (std::size_t start = 0; start < bytes.size(); start += size) {
    const auto first = bytes.begin() + static_cast<std::ptrdiff_t>(start);
    pieces.emplace_back(first,
                        first + static_cast<std::ptrdiff_t>(std::min(size, bytes.size() - start)));
  }
  return pieces;
}

Bytes replyPacket(const Bytes& content) {
  require(content.size() < npa::LengthLimit);
  return packets::framed(support::joined({{0x50}, content}));
}

}  // namespace fuzz
