#include "emulator/adapter.h"

#include <algorithm>
#include <array>
#include <string>
#include <utility>

namespace emulator {

namespace {

using npa::Byte;
using Kind = Message::Kind;

constexpr std::array<Byte, 5> Refusal = {0xA5, 0x00, 0x02, npa::FlagRefused, 0xE0};
/// Without a start byte, so that no reader can take it for a packet.
constexpr std::array<Byte, 12> Garbage = {0x00, 0xFF, 0x13, 0x37, 0x5A, 0x80,
                                          0x7F, 0x20, 0x0A, 0x99, 0xC3, 0x42};
constexpr Byte Rejected = 0x00;
constexpr std::chrono::milliseconds PauseBetweenPieces{20};

Bytes wrapped(const Bytes& packet) {
  const auto header = npa::wrapHeader(packet.size());
  Bytes result(header.begin(), header.end());
  result.insert(result.end(), packet.begin(), packet.end());
  return result;
}

/// The answer to settings: their kind and the result.
Bytes settingsReply(Byte result) {
  return {npa::StartByte,
          0x00,
          0x05,
          npa::RequestFlag,
          npa::RequestCommand,
          npa::DataSettings[0],
          npa::DataSettings[1],
          result};
}

Bytes textValue(const std::string& text, bool terminated) {
  Bytes value(text.begin(), text.end());
  if (terminated) {
    value.push_back(0);
  }
  return value;
}

}  // namespace

Adapter::Adapter(Personality personality, MessageLog& log)
    : m_Personality(std::move(personality)), m_Log(log) {
  m_Settings.set(settings::Descriptor, textValue(m_Personality.descriptor, false));
  m_Settings.set(settings::IpAddress, m_Personality.ipAddress);
  m_Settings.set(settings::TroubleCode, std::array<Byte, 4>{0, 0, 0, m_Personality.troubleCode});
  if (!m_Personality.ssid.empty()) {
    m_Settings.set(settings::Ssid, textValue(m_Personality.ssid, true));
  }
}

std::vector<Adapter::Reply> Adapter::receive(std::span<const Byte> bytes) {
  const std::size_t strayBefore = m_Reader.strayBytes();
  std::vector<Reply> replies;
  for (Bytes& packet : m_Reader.feed(bytes)) {
    const Message message = parseMessage(std::move(packet));
    m_Log.received(message);
    Answer reply = answer(message);
    if (m_Personality.cutAt && reply.bytes.size() > *m_Personality.cutAt) {
      reply.bytes.resize(*m_Personality.cutAt);
    }
    m_Log.answered(reply.bytes, reply.meaning);
    std::ranges::move(inPieces(std::move(reply.bytes)), std::back_inserter(replies));
  }
  if (const std::size_t stray = m_Reader.strayBytes() - strayBefore; stray > 0) {
    m_Log.note(std::to_string(stray) + " bytes outside any packet");
  }
  return replies;
}

Adapter::Answer Adapter::answer(const Message& message) {
  if (m_Personality.silent) {
    return {{}, "no answer: silent"};
  }
  if (m_Personality.garbage) {
    return {Bytes(Garbage.begin(), Garbage.end()), "garbage"};
  }
  if (m_Personality.refuseAll || (m_Personality.refuseWrapped && message.wrapped)) {
    return {Bytes(Refusal.begin(), Refusal.end()), "refused"};
  }
  Answer result;
  switch (message.kind) {
    case Kind::Sniff:
      return {{}, "no answer expected"};
    case Kind::Query:
      result = answerQuery(message);
      break;
    case Kind::StoreSettings:
      result = storeSettings(message);
      break;
    case Kind::Malformed:
      result = {settingsReply(Rejected), "rejected: malformed"};
      break;
    case Kind::ObjectStoreCall:
    case Kind::Unknown:
      return {Bytes(Refusal.begin(), Refusal.end()), "refused: not supported"};
  }
  const bool wrap =
      message.wrapped || (message.kind == Kind::Query && message.asked.group == npa::Group8021x);
  if (wrap) {
    result.bytes = wrapped(result.bytes);
  }
  if (!npa::canBeFramed(result.bytes.size())) {
    return {Bytes(Refusal.begin(), Refusal.end()), "refused: the answer fits no packet"};
  }
  return result;
}

Adapter::Answer Adapter::answerQuery(const Message& message) const {
  // Keys can be set, never read.
  const bool readable = !isSecret(message.asked);
  const Bytes value = readable ? m_Settings.get(message.asked) : Bytes();
  Bytes reply = message.query;
  reply.push_back(npa::highByte(value.size()));
  reply.push_back(npa::lowByte(value.size()));
  reply.insert(reply.end(), value.begin(), value.end());
  const std::size_t length = reply.size() - npa::LengthHeaderSize;
  reply[1] = npa::highByte(length);
  reply[2] = npa::lowByte(length);
  return {std::move(reply), readable ? "value given" : "no value given"};
}

Adapter::Answer Adapter::storeSettings(const Message& message) {
  if (m_Personality.settingsResult != Personality().settingsResult) {
    return {settingsReply(m_Personality.settingsResult), "settings not accepted"};
  }
  for (const Message::Setting& setting : message.settings) {
    m_Settings.set(setting.key, setting.value);
  }
  return {settingsReply(m_Personality.settingsResult), "settings stored"};
}

std::vector<Adapter::Reply> Adapter::inPieces(Bytes bytes) const {
  std::vector<Reply> pieces;
  std::chrono::milliseconds delay = m_Personality.answerAfter;
  const std::size_t size = std::max<std::size_t>(m_Personality.pieceSize.value_or(bytes.size()), 1);
  for (std::size_t start = 0; start < bytes.size(); start += size) {
    const auto first = bytes.begin() + static_cast<std::ptrdiff_t>(start);
    const auto count = static_cast<std::ptrdiff_t>(std::min(size, bytes.size() - start));
    pieces.push_back({delay, Bytes(first, first + count)});
    delay += PauseBetweenPieces;
  }
  return pieces;
}

}  // namespace emulator
