// Adapter: replies to queries and settings, and applies the faults of the personality. The replies
// to method calls are in adapter_calls.cpp. The network and the restart are in adapter_network.cpp.

#include "emulator/adapter/adapter.h"

#include <algorithm>
#include <array>
#include <string>
#include <utility>

#include "emulator/adapter/authentication.h"
#include "emulator/adapter/reply_packets.h"

namespace emulator {

namespace {

using npa::Byte;
using Kind = Message::Kind;

/// The result in the reply to a malformed request.
constexpr Byte Rejected = 0x00;
constexpr std::chrono::milliseconds PauseBetweenPieces{20};
/// The setting in the record that `otherRecordFirst` adds. No host queries it.
constexpr npa::SettingKey OtherSetting = {npa::Group8021x, 0x26};

/// Returns the bytes of a text, with a zero byte at the end if `terminated` is set.
npa::Bytes textValue(const std::string& text, bool terminated) {
  npa::Bytes value(text.begin(), text.end());
  if (terminated) {
    value.push_back(0);
  }
  return value;
}

}  // namespace

Adapter::Adapter(Personality personality, MessageLog& log, std::function<Clock::time_point()> now)
    : m_Personality(std::move(personality)),
      m_Log(log),
      m_Certificates(m_Personality.certificates),
      m_Now(std::move(now)),
      m_Start(m_Now()) {
  for (const InitialSetting& setting : m_Personality.settings) {
    m_Settings.preset(setting.key, setting.value);
  }
  m_Settings.preset(npa::settings::Descriptor, textValue(m_Personality.descriptor, false));
  if (!m_Personality.ssid.empty()) {
    m_Settings.preset(npa::settings::Ssid, textValue(m_Personality.ssid, true));
  }
  presetNetworkValues(membership());
}

void Adapter::restore(const SettingsStore::Values& settings, CertificateStore certificates) {
  for (const auto& [key, value] : settings) {
    m_Settings.set(key, value);
  }
  m_Certificates.restore(std::move(certificates));
  presetNetworkValues(membership());
}

std::vector<std::string> Adapter::describe(bool showSecrets) const {
  std::vector<std::string> lines = m_Settings.describe(showSecrets);
  std::ranges::move(m_Certificates.describe(), std::back_inserter(lines));
  return lines;
}

unsigned long Adapter::revision() const {
  return m_Settings.revision() + m_Certificates.store().revision();
}

std::vector<Adapter::ReplyPiece> Adapter::receive(std::span<const Byte> bytes) {
  if (isRestarting()) {
    m_Log.note(std::to_string(bytes.size()) + " bytes dropped during the restart");
    return {};
  }
  const std::size_t strayBefore = m_Reader.strayBytes();
  std::vector<ReplyPiece> pieces;
  for (npa::Bytes& packet : m_Reader.feed(bytes)) {
    const Message message = parseMessage(std::move(packet));
    m_Log.received(message);
    const unsigned long revisionBefore = revision();
    Reply reply = answer(message);
    const bool hasChanged = revision() != revisionBefore;
    if (m_Save && hasChanged) {
      m_Save();
    }
    if (m_Personality.cutAt && reply.bytes.size() > *m_Personality.cutAt) {
      reply.bytes.resize(*m_Personality.cutAt);
    }
    m_Log.replied(reply.bytes, reply.meaning);
    std::ranges::move(inPieces(std::move(reply.bytes)), std::back_inserter(pieces));
    if (hasChanged) {
      join();
    }
    if (hasChanged && message.kind == Kind::StoreSettings) {
      restart(pieces.empty() ? std::chrono::milliseconds(0) : pieces.back().delay);
      if (isRestarting()) {
        break;
      }
    }
  }
  if (const std::size_t stray = m_Reader.strayBytes() - strayBefore; stray > 0) {
    m_Log.note(std::to_string(stray) + " bytes outside any packet");
  }
  return pieces;
}

Adapter::Reply Adapter::answer(const Message& message) {
  if (m_Personality.silent) {
    return {{}, "no reply: silent"};
  }
  if (message.kind == Kind::Announcement) {
    return {{}, "no reply expected"};
  }
  if (m_Personality.garbage) {
    return {garbage(), "garbage"};
  }
  if (m_Personality.refuseAll || (m_Personality.refuseWrapped && message.wrapped)) {
    return {refusal(), "refused"};
  }
  Reply result;
  switch (message.kind) {
    case Kind::Query:
      result = answerQuery(message);
      break;
    case Kind::StoreSettings:
      result = storeSettings(message);
      break;
    case Kind::Malformed:
      result = {settingsReply(Rejected), "not accepted: malformed"};
      break;
    case Kind::MethodCall:
      return message.wrapped ? Reply{refusal(), "refused: a wrapped method call"}
                             : answerCall(*message.call);
    case Kind::Announcement:
    case Kind::Unknown:
      return {refusal(), "refused: not supported"};
  }
  // The reply to a query for an 802.1x setting is wrapped already.
  const bool isWrapped = message.kind == Kind::Query && message.asked.group == npa::Group8021x;
  if (message.wrapped && !isWrapped) {
    result.bytes = wrapped(result.bytes);
  }
  if (!npa::canBeFramed(result.bytes.size())) {
    return {refusal(), "refused: the reply is too large for a packet"};
  }
  return result;
}

bool Adapter::isReached(const Readiness& readiness, int earlierQueries) const {
  return earlierQueries >= readiness.afterQueries && m_Now() - m_Start >= readiness.afterTime;
}

npa::Bytes Adapter::currentValue(npa::SettingKey key, int earlierQueries) const {
  if (m_Live && key == npa::settings::AuthStatus) {
    return {m_Live->authStatus};
  }
  const Authentication authentication(m_Settings, m_Certificates.store(), m_Personality.networks);
  if (const auto value = authentication.value(key)) {
    return {*value};
  }
  if (key == npa::settings::IpAddress &&
      !isReached(m_Personality.addressAcquired, earlierQueries)) {
    return {0, 0, 0, 0};
  }
  if (key == npa::settings::TroubleCode && m_Personality.troubleCleared &&
      membership() == Membership::Joined &&
      isReached(*m_Personality.troubleCleared, earlierQueries)) {
    return {0, 0, 0, 0};
  }
  // A host can set keys and passwords but not read them.
  return catalogue::isSecret(key) ? npa::Bytes() : m_Settings.get(key);
}

npa::Bytes Adapter::securityRecords(npa::SettingKey key) const {
  std::vector<npa::Bytes> records;
  if (m_Personality.otherRecordFirst) {
    records.push_back(valuePacket(OtherSetting, {0, 0, 0, 0}));
  }
  if (key == npa::settings::AuthStatus && !m_Personality.authStatus.empty()) {
    for (const Byte status : m_Personality.authStatus) {
      records.push_back(valuePacket(key, {status}));
    }
  } else {
    records.push_back(valuePacket(key, currentValue(key, 0)));
  }
  if (m_Personality.cutRecordAt && records.back().size() > *m_Personality.cutRecordAt) {
    records.back().resize(*m_Personality.cutRecordAt);
  }
  npa::Bytes all;
  for (const npa::Bytes& record : records) {
    all.insert(all.end(), record.begin(), record.end());
  }
  return all;
}

Adapter::Reply Adapter::answerQuery(const Message& message) {
  const npa::SettingKey key = message.asked;
  const int earlierQueries = m_Queries[key]++;
  if (key.group == npa::Group8021x) {
    return {packetSequence(valuePacket(OtherSetting, {0, 0, 0, 0}), securityRecords(key),
                           m_Personality.replyPackets),
            "records sent"};
  }
  return {valuePacket(key, currentValue(key, earlierQueries)), "value sent"};
}

Adapter::Reply Adapter::storeSettings(const Message& message) {
  if (m_Personality.settingsResult != Personality().settingsResult) {
    return {settingsReply(m_Personality.settingsResult), "settings not accepted"};
  }
  for (const Message::Setting& setting : message.settings) {
    m_Settings.set(setting.key, setting.value);
  }
  return {settingsReply(m_Personality.settingsResult), "settings stored"};
}

std::vector<Adapter::ReplyPiece> Adapter::inPieces(npa::Bytes bytes) const {
  std::vector<ReplyPiece> pieces;
  std::chrono::milliseconds delay = m_Personality.replyDelay;
  const std::size_t size = std::max<std::size_t>(m_Personality.pieceSize.value_or(bytes.size()), 1);
  for (std::size_t start = 0; start < bytes.size(); start += size) {
    const auto first = bytes.begin() + static_cast<std::ptrdiff_t>(start);
    const auto count = static_cast<std::ptrdiff_t>(std::min(size, bytes.size() - start));
    pieces.push_back({delay, npa::Bytes(first, first + count)});
    delay += PauseBetweenPieces;
  }
  return pieces;
}

}  // namespace emulator
