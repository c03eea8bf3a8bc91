#include <string>
#include <utility>
#include <variant>

#include "emulator/adapter/adapter.h"
#include "emulator/adapter/reply_packets.h"

namespace emulator {

const ObjectAnswer* Adapter::findObjectAnswer(const ParsedCall& call) const {
  const auto* const readable = std::get_if<MethodCall>(&call);
  const ObjectAnswer* found = nullptr;
  for (const ObjectAnswer& candidate : m_Personality.objectAnswers) {
    const bool forMethod = readable != nullptr && candidate.method == readable->method;
    const bool forEvery = candidate.method.empty() && (found == nullptr || found->method.empty());
    if (forMethod || forEvery) {
      found = &candidate;
    }
  }
  return found;
}

Adapter::Answer Adapter::answerCall(const ParsedCall& call) {
  const ObjectAnswer* const given = findObjectAnswer(call);
  if (given != nullptr && !given->status) {
    return {rawReply(given->bytes), "the bytes of " + given->file};
  }
  const CallReply reply =
      given != nullptr ? CallReply(*given->status) : m_Certificates.answer(call);
  std::string meaning = "status " + std::to_string(reply.status());
  if (reply.status() != static_cast<int>(CallStatus::Success)) {
    meaning.append(": ").append(reply.message());
  }
  return {objectStoreReply(reply.xml(), m_Personality.replyPackets), std::move(meaning)};
}

}  // namespace emulator
