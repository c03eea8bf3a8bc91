#pragma once

#include <deque>
#include <optional>
#include <span>
#include <vector>

#include "emulator/adapter/adapter.h"

namespace emulator {

/// The pieces of an adapter's replies that have not been sent yet, in order. `due` returns no piece
/// before its due time.
///
///     queue.add(adapter.receive(bytes), now);
///     while (ReplyQueue::Piece* const piece = queue.due(Clock::now())) {
///       write(piece->rest());
///       queue.drop();
///     }
class ReplyQueue {
 public:
  using Clock = Adapter::Clock;

  /// A piece of a reply. Its first `sent` bytes have been sent.
  struct Piece {
    Clock::time_point due;
    npa::Bytes bytes;
    std::size_t sent = 0;

    std::span<const npa::Byte> rest() const { return std::span(bytes).subspan(sent); }
  };

  /// Adds pieces of replies. Their delays start at `now`.
  void add(std::vector<Adapter::ReplyPiece> pieces, Clock::time_point now);

  /// Returns the next piece, or null if none is due. The piece stays in the queue until `drop`.
  Piece* due(Clock::time_point now);
  void drop() { m_Pieces.pop_front(); }
  void clear() { m_Pieces.clear(); }

  /// Returns the due time of the next piece, or nothing if there is none.
  std::optional<Clock::time_point> nextDue() const;

 private:
  std::deque<Piece> m_Pieces;
};

}  // namespace emulator
