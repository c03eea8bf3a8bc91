// Adapter: replies to method calls. The replies come from the certificate object, or the
// personality prescribes them.

#include <string>
#include <utility>
#include <variant>

#include "emulator/adapter/adapter.h"
#include "emulator/adapter/reply_packets.h"

namespace emulator {

const ObjectReply* Adapter::findObjectReply(const ParsedCall& call) const {
  const auto* const valid = std::get_if<MethodCall>(&call);
  const ObjectReply* found = nullptr;
  for (const ObjectReply& candidate : m_Personality.objectReplies) {
    const bool isForMethod = valid != nullptr && candidate.method == valid->method;
    const bool isForAll = candidate.method.empty() && (found == nullptr || found->method.empty());
    if (isForMethod || isForAll) {
      found = &candidate;
    }
  }
  return found;
}

Adapter::Reply Adapter::answerCall(const ParsedCall& call) {
  const ObjectReply* const prescribed = findObjectReply(call);
  if (prescribed != nullptr && !prescribed->status) {
    return {rawReply(prescribed->bytes), "the bytes of " + prescribed->file};
  }
  const CallReply reply =
      prescribed != nullptr ? CallReply(*prescribed->status) : m_Certificates.answer(call);
  std::string meaning = "status " + std::to_string(reply.status());
  if (reply.status() != static_cast<int>(CallStatus::Success)) {
    meaning.append(": ").append(reply.message());
  }
  return {objectStoreReply(reply.xml(), m_Personality.replyPackets), std::move(meaning)};
}

}  // namespace emulator
