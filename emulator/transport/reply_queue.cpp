// The queue of replies. Its order is that of the answers, and not that of the due times.

#include "emulator/transport/reply_queue.h"

#include <utility>

namespace emulator {

void ReplyQueue::add(std::vector<Adapter::Reply> replies, Clock::time_point now) {
  for (Adapter::Reply& reply : replies) {
    m_Pieces.push_back({now + reply.delay, std::move(reply.bytes)});
  }
}

ReplyQueue::Piece* ReplyQueue::due(Clock::time_point now) {
  return m_Pieces.empty() || m_Pieces.front().due > now ? nullptr : &m_Pieces.front();
}

std::optional<ReplyQueue::Clock::time_point> ReplyQueue::nextDue() const {
  return m_Pieces.empty() ? std::nullopt : std::optional(m_Pieces.front().due);
}

}  // namespace emulator
