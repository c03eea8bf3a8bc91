// The queue of replies. Pieces keep the order in which they were added, even if a later piece is
// due earlier.

#include "emulator/transport/reply_queue.h"

#include <utility>

namespace emulator {

void ReplyQueue::add(std::vector<Adapter::ReplyPiece> pieces, Clock::time_point now) {
  for (Adapter::ReplyPiece& piece : pieces) {
    m_Pieces.push_back({now + piece.delay, std::move(piece.bytes)});
  }
}

ReplyQueue::Piece* ReplyQueue::due(Clock::time_point now) {
  return m_Pieces.empty() || m_Pieces.front().due > now ? nullptr : &m_Pieces.front();
}

std::optional<ReplyQueue::Clock::time_point> ReplyQueue::nextDue() const {
  return m_Pieces.empty() ? std::nullopt : std::optional(m_Pieces.front().due);
}

}  // namespace emulator
