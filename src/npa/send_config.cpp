#include "npa/send_config.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <ctime>
#include <utility>

#include "npa/exchange.h"
#include "npa/packet.h"
#include "util/clock.h"
#include "util/debug_line.h"
#include "util/utility.h"

namespace {

constexpr unsigned int QueryPauseSeconds = 2;

std::span<unsigned char> bytesOf(unsigned char* packet, int length) {
  return {packet, static_cast<std::size_t>(std::max(length, 0))};
}

}  // namespace

sendConfig::sendConfig(std::string path)
    : m_DevicePath(std::move(path)), m_Transport(HCUSBTransport::GetInstance()) {}

sendConfig::~sendConfig() {
  HCUSBTransport::DestroyInstance();
}

int sendConfig::sendQuery(unsigned char* packet, int length, unsigned char*& reply, int timeout) {
  if (m_Transport->CT_Open(m_DevicePath.c_str()) != 0) {
    util::debugLine("Failed to open usb device '%s'!", m_DevicePath.c_str());
    return 0;
  }
  m_Transport->writeRequest(bytesOf(packet, length));
  util::pauseSeconds(QueryPauseSeconds);
  const std::vector<unsigned char> collected = collectReply(timeout);
  m_Transport->CT_Close();
  if (collected.empty()) {
    return 0;
  }
  reply = new unsigned char[collected.size()];
  std::ranges::copy(collected, reply);
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
  constexpr bool garbled = true;  // read on until the deadline
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
    return false;
  }
  collected.insert(collected.end(), body.begin() + 1, body.end());
  return (flag & npa::FlagMoreFollows) != 0;
}

bool sendConfig::readExactly(std::span<unsigned char> destination) {
  const auto wanted = static_cast<long>(destination.size());
  return m_Transport->CT_Read(destination.data(), destination.size()) == wanted;
}

int sendConfig::setConfig(unsigned char* packet, int length) {
  return runExchange(exchanges::SetConfig, bytesOf(packet, length));
}

int sendConfig::resetINA(unsigned char* packet, int length) {
  return runExchange(exchanges::ResetIna, bytesOf(packet, length));
}

int sendConfig::getAdapterDescriptor(unsigned char* packet, int length) {
  return runExchange(exchanges::GetAdapterDescriptor, bytesOf(packet, length));
}

int sendConfig::getTroubleCode(unsigned char* packet, int length) {
  return runExchange(exchanges::GetTroubleCode, bytesOf(packet, length));
}

int sendConfig::getSSID(unsigned char* packet, int length) {
  return runExchange(exchanges::GetSsid, bytesOf(packet, length));
}

int sendConfig::getIP(unsigned char* packet, int length) {
  return runExchange(exchanges::GetIp, bytesOf(packet, length));
}

int sendConfig::runExchange(const Exchange& exchange, std::span<unsigned char> request) {
  std::vector<unsigned char> buffer(exchange.bufferSize);
  for (int attempt = 1;; ++attempt) {
    // A failed open is not looked at: the exchange then fails through its reply.
    m_Transport->CT_Open(m_DevicePath.c_str());
    m_Transport->writeRequest(request);
    util::pauseSeconds(exchange.pauseAfterWrite);
    const long count = m_Transport->CT_Read(buffer.data(), buffer.size());
    m_Transport->CT_Close();

    const auto received = static_cast<std::size_t>(std::max(count, 0L));
    const Exchange::Reply reply(buffer.data(), received);
    if (const std::optional<int> result = exchange.judge(reply, request.size())) {
      return *result;
    }
    if (attempt == exchange.attempts) {
      return exchange.afterLastAttempt(reply);
    }
    util::pauseSeconds(exchange.pauseBetween);
  }
}
