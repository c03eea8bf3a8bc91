#include "session/adapter.h"

#include <utility>

#include "npa/packet.h"
#include "wireless/setting_query.h"

namespace session {

namespace {

/// How long the packets of a reply are collected. The time starts at the end of the pause that
/// follows the request.
constexpr int CollectSeconds = 3;
/// The size of the field between the repeated query and the value.
constexpr std::size_t ValueLengthSize = 2;

}  // namespace

Adapter::Adapter(std::string device) : m_Sender(std::move(device)) {
  m_Sender.setReading(sendConfig::Reading::WholePacket);
}

npa::Bytes Adapter::outgoing(std::span<const npa::Byte> packet) const {
  npa::Bytes bytes;
  bytes.reserve(npa::WrapHeaderSize + packet.size());
  if (m_Wraps) {
    const auto header = npa::wrapHeader(packet.size());
    bytes.assign(header.begin(), header.end());
  }
  bytes.insert(bytes.end(), packet.begin(), packet.end());
  return bytes;
}

Adapter::Answer Adapter::askOnce(const Exchange& exchange, std::span<const npa::Byte> packet) {
  Exchange once = exchange;
  once.attempts = 1;
  npa::Bytes request = outgoing(packet);
  return {m_Sender.run(once, request), request.size()};
}

Adapter::Answer Adapter::ask(const Exchange& exchange, std::span<const npa::Byte> packet) {
  Answer answer = askOnce(exchange, packet);
  if (answer.outcome.kind == npa::Outcome::Kind::Refused && m_Wraps) {
    m_Wraps = false;
    answer = askOnce(exchange, packet);
  }
  return answer;
}

std::optional<std::string> Adapter::readSsid() {
  const Answer answer = ask(exchanges::GetSsid, npa::query(npa::settings::Ssid));
  const npa::Bytes& reply = answer.outcome.reply;
  if (const auto ssid = npa::ssidIn(reply, answer.requestSize)) {
    return std::string(*ssid);
  }
  // An adapter without a network repeats the query and adds a length of 0.
  const bool isEmpty = answer.outcome.kind == npa::Outcome::Kind::Unexpected &&
                       reply.size() == answer.requestSize + ValueLengthSize;
  return isEmpty ? std::optional(std::string()) : std::nullopt;
}

std::optional<npa::Address> Adapter::readAddress() {
  const Answer answer = ask(exchanges::GetIp, npa::query(npa::settings::IpAddress));
  return answer.outcome.kind == npa::Outcome::Kind::Accepted ? npa::addressIn(answer.outcome.reply)
                                                             : std::nullopt;
}

std::optional<npa::Byte> Adapter::readTroubleCode() {
  const Answer answer = ask(exchanges::GetTroubleCode, npa::query(npa::settings::TroubleCode));
  return answer.outcome.kind == npa::Outcome::Kind::Refused
             ? std::nullopt
             : npa::troubleCodeIn(answer.outcome.reply);
}

std::optional<npa::Byte> Adapter::readAuthentication() {
  constexpr npa::SettingKey key = npa::settings::AuthStatus;
  npa::Bytes request = outgoing(npa::query(key));
  auto status = firstStatusIn(m_Sender.query(request, CollectSeconds), key);
  if (!status && m_Wraps) {
    // The collected reply of a refused query is empty, like a missing reply. So the bare query
    // follows in both cases.
    m_Wraps = false;
    request = outgoing(npa::query(key));
    status = firstStatusIn(m_Sender.query(request, CollectSeconds), key);
    m_Wraps = !status;
  }
  return status;
}

npa::Outcome::Kind Adapter::store(std::span<const npa::Byte> packet) {
  return ask(exchanges::SetConfig, packet).outcome.kind;
}

npa::Outcome::Kind Adapter::reset() {
  Exchange exchange = exchanges::ResetIna;
  // zvkconfig ignores a refusal of this request. A session does not: the bare packet follows the
  // refusal, as for the other requests.
  exchange.canBeRefused = true;
  return ask(exchange, npa::ResetPacket).outcome.kind;
}

}  // namespace session
