// The operations of sendConfig: running an exchange, collecting a reply of several packets, and the
// operations that use these two.

#include "npa/send_config.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <ctime>
#include <utility>

#include "npa/packet.h"
#include "npa/replies.h"
#include "util/clock.h"
#include "util/debug_line.h"
#include "util/format.h"
#include "util/output.h"
#include "util/utility.h"

namespace {

/// The pause between a request and the collection of its reply. The adapter needs this pause.
constexpr unsigned int QueryPauseSeconds = 2;

// The results of the operations that return a status.
constexpr int Success = 0;
constexpr int Refused = -1;
constexpr int NoValidAnswer = 1;

/// Returns the status for an outcome. A missing reply and an unexpected reply have the same status.
int statusOf(const npa::Outcome& outcome) {
  switch (outcome.kind) {
    case npa::Outcome::Kind::Accepted:
      return Success;
    case npa::Outcome::Kind::Refused:
      return Refused;
    case npa::Outcome::Kind::Unexpected:
    case npa::Outcome::Kind::NoAnswer:
      break;
  }
  return NoValidAnswer;
}

/// Returns the bytes of a packet, or an empty span if `length` is negative.
std::span<unsigned char> bytesOf(unsigned char* packet, int length) {
  return {packet, static_cast<std::size_t>(std::max(length, 0))};
}

}  // namespace

sendConfig::sendConfig(std::string path)
    : m_DevicePath(std::move(path)), m_Transport(HCUSBTransport::GetInstance()) {}

sendConfig::~sendConfig() {
  HCUSBTransport::DestroyInstance();
}

std::vector<unsigned char> sendConfig::query(std::span<unsigned char> request, int timeout) {
  m_WasRefused = false;
  if (m_Transport->CT_Open(m_DevicePath.c_str()) != 0) {
    util::debugLine("Failed to open usb device '%s'!", m_DevicePath.c_str());
    return {};
  }
  m_Transport->writeRequest(request);
  util::pauseSeconds(QueryPauseSeconds);
  std::vector<unsigned char> collected = collectReply(timeout);
  m_Transport->CT_Close();
  return collected;
}

int sendConfig::sendQuery(unsigned char* packet, int length, unsigned char*& reply, int timeout) {
  const std::vector<unsigned char> collected = query(bytesOf(packet, length), timeout);
  if (!collected.empty()) {
    reply = new unsigned char[collected.size()];
    std::ranges::copy(collected, reply);
  }
  return static_cast<int>(collected.size());
}

std::vector<unsigned char> sendConfig::collectReply(int timeout) {
  const std::time_t start = util::nowInSeconds();
  std::vector<unsigned char> collected;
  bool keepReading = true;
  do {
    keepReading = readReplyPacket(collected);
  } while (keepReading && util::nowInSeconds() - start < timeout);
  return collected;
}

bool sendConfig::readReplyPacket(std::vector<unsigned char>& collected) {
  constexpr bool garbled = true;  // the caller reads on until the deadline
  std::array<unsigned char, 1> start{};
  if (!readExactly(start) || start[0] != npa::StartByte) {
    return garbled;
  }
  std::array<unsigned char, 2> lengthField{};
  if (!readExactly(lengthField)) {
    return garbled;
  }
  std::vector<unsigned char> body(Utility::ExtractShortFromBuffer(lengthField.data()));
  if (body.empty() || !readExactly(body)) {
    return garbled;
  }
  const unsigned char flag = body.front();
  if ((flag & npa::FlagEndsExchange) != 0) {
    m_WasRefused = true;
    return false;
  }
  collected.insert(collected.end(), body.begin() + 1, body.end());
  return (flag & npa::FlagMoreFollows) != 0;
}

bool sendConfig::readExactly(std::span<unsigned char> destination) {
  const auto wanted = static_cast<long>(destination.size());
  return m_Transport->CT_Read(destination.data(), destination.size()) == wanted;
}

std::size_t sendConfig::readReply(std::span<unsigned char> buffer) {
  const auto read = [this](std::span<unsigned char> part) {
    return static_cast<std::size_t>(std::max(m_Transport->CT_Read(part.data(), part.size()), 0L));
  };
  if (m_Reading == Reading::UntilSilence) {
    return read(buffer);
  }
  const auto header = buffer.first(npa::LengthHeaderSize);
  const std::size_t got = read(header);
  if (got < header.size()) {
    return got;
  }
  const auto rest = buffer.subspan(header.size());
  const std::size_t length = header[0] == npa::StartByte ? npa::numberAt(header, 1) : rest.size();
  return got + read(rest.first(std::min(length, rest.size())));
}

npa::Outcome sendConfig::run(const Exchange& exchange, std::span<unsigned char> request) {
  npa::Bytes buffer(exchange.bufferSize);
  for (int attempt = 1;; ++attempt) {
    // The result of the open is ignored: if the device is not open, the write and the read fail
    // too, so the attempt ends without a reply.
    m_Transport->CT_Open(m_DevicePath.c_str());
    m_Transport->writeRequest(request);
    util::pauseSeconds(exchange.pauseAfterWrite);
    const auto reply = std::span(buffer).first(readReply(buffer));
    m_Transport->CT_Close();

    const auto ended = [&](npa::Outcome::Kind kind) {
      buffer.resize(reply.size());
      return npa::Outcome{kind, std::move(buffer)};
    };
    if (exchange.canBeRefused && npa::isRefusal(reply)) {
      return ended(npa::Outcome::Kind::Refused);
    }
    if (exchange.isExpected(reply, request.size())) {
      return ended(npa::Outcome::Kind::Accepted);
    }
    if (attempt == exchange.attempts) {
      return ended(reply.empty() ? npa::Outcome::Kind::NoAnswer : npa::Outcome::Kind::Unexpected);
    }
    util::pauseSeconds(exchange.pauseBetween);
  }
}

int sendConfig::setConfig(unsigned char* packet, int length) {
  const npa::Outcome outcome = run(exchanges::SetConfig, bytesOf(packet, length));
  // For this request a missing reply counts as a refusal: the caller then retries with a bare
  // packet.
  return outcome.kind == npa::Outcome::Kind::NoAnswer ? Refused : statusOf(outcome);
}

int sendConfig::resetINA(unsigned char* packet, int length) {
  return statusOf(run(exchanges::ResetIna, bytesOf(packet, length)));
}

int sendConfig::getAdapterDescriptor(unsigned char* packet, int length) {
  return statusOf(run(exchanges::GetAdapterDescriptor, bytesOf(packet, length)));
}

int sendConfig::getTroubleCode(unsigned char* packet, int length) {
  const npa::Outcome outcome = run(exchanges::GetTroubleCode, bytesOf(packet, length));
  // The trouble code of the last attempt is the result.
  return outcome.kind == npa::Outcome::Kind::Unexpected ? npa::troubleCodeIn(outcome.reply).value()
                                                        : statusOf(outcome);
}

int sendConfig::getSSID(unsigned char* packet, int length) {
  const auto request = bytesOf(packet, length);
  const npa::Outcome outcome = run(exchanges::GetSsid, request);
  if (outcome.kind == npa::Outcome::Kind::Accepted) {
    util::writeAnswer(std::string(npa::ssidIn(outcome.reply, request.size()).value()) + "\n");
  }
  return statusOf(outcome);
}

int sendConfig::getIP(unsigned char* packet, int length) {
  const npa::Outcome outcome = run(exchanges::GetIp, bytesOf(packet, length));
  if (outcome.kind == npa::Outcome::Kind::Accepted) {
    const npa::Address address = npa::addressIn(outcome.reply).value();
    util::writeAnswer(
        util::formatted("%d.%d.%d.%d\n", address[0], address[1], address[2], address[3]));
  }
  return statusOf(outcome);
}
