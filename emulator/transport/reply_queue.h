#pragma once

#include <deque>
#include <optional>
#include <span>
#include <vector>

#include "emulator/adapter/adapter.h"

namespace emulator {

/// The pieces of an adapter's replies that are still to be sent, in order, each not before its
/// time.
class ReplyQueue {
 public:
  using Clock = Adapter::Clock;

  /// A piece of a reply, of which the first `sent` bytes are gone.
  struct Piece {
    Clock::time_point due;
    npa::Bytes bytes;
    std::size_t sent = 0;

    std::span<const npa::Byte> rest() const { return std::span(bytes).subspan(sent); }
  };

  /// Takes what the adapter answered at `now`.
  void add(std::vector<Adapter::Reply> replies, Clock::time_point now);

  /// The piece that is to be sent next, or null while none is due. It stays first until `drop`.
  Piece* due(Clock::time_point now);
  void drop() { m_Pieces.pop_front(); }
  void clear() { m_Pieces.clear(); }

  /// When the next piece is due; nothing when there is none.
  std::optional<Clock::time_point> nextDue() const;

 private:
  std::deque<Piece> m_Pieces;
};

}  // namespace emulator
