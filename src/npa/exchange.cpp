#include "npa/exchange.h"

#include <algorithm>
#include <array>
#include <cstdio>

#include "npa/packet.h"
#include "util/utility.h"

namespace {

using Reply = Exchange::Reply;

constexpr int Success = 0;
constexpr int Refused = -1;
constexpr int NoValidAnswer = 1;

constexpr std::uint8_t SettingsAccepted = 0x01;
constexpr std::uint8_t DescriptorEnd = '-';
/// A reply to a query repeats the request and adds the two bytes of the value's length.
constexpr std::size_t ValueLengthSize = 2;
constexpr std::size_t AddressSize = 4;

bool isRefusal(Reply reply) {
  return reply.size() > npa::FlagOffset && reply[npa::FlagOffset] == npa::FlagRefused;
}

bool endsWith(Reply reply, std::uint8_t byte) {
  return !reply.empty() && reply.back() == byte;
}

std::optional<int> judgeSetConfig(Reply reply, std::size_t /*requestLength*/) {
  if (reply.empty() || isRefusal(reply)) {
    return Refused;
  }
  return endsWith(reply, SettingsAccepted) ? Success : NoValidAnswer;
}

std::optional<int> judgeReset(Reply reply, std::size_t /*requestLength*/) {
  return endsWith(reply, SettingsAccepted) ? std::optional(Success) : std::nullopt;
}

std::optional<int> judgeAdapterDescriptor(Reply reply, std::size_t /*requestLength*/) {
  return endsWith(reply, DescriptorEnd) ? std::optional(Success) : std::nullopt;
}

std::optional<int> judgeTroubleCode(Reply reply, std::size_t /*requestLength*/) {
  if (isRefusal(reply)) {
    return Refused;
  }
  return endsWith(reply, 0) ? std::optional(Success) : std::nullopt;
}

std::optional<int> judgeSsid(Reply reply, std::size_t requestLength) {
  if (isRefusal(reply)) {
    return Refused;
  }
  const std::size_t start = requestLength + ValueLengthSize;
  if (reply.size() <= start) {
    return std::nullopt;
  }
  const Reply field = reply.subspan(start);
  const Reply ssid(field.begin(), std::ranges::find(field, std::uint8_t{0}));
  std::fwrite(ssid.data(), 1, ssid.size(), stdout);
  std::fputc('\n', stdout);
  return Success;
}

std::optional<int> judgeIp(Reply reply, std::size_t /*requestLength*/) {
  if (isRefusal(reply)) {
    return Refused;
  }
  if (reply.size() < AddressSize) {
    return std::nullopt;
  }
  const Reply address = reply.last(AddressSize);
  if (std::ranges::all_of(address, [](std::uint8_t byte) { return byte == 0; })) {
    return std::nullopt;
  }
  std::printf("%d.%d.%d.%d\n", address[0], address[1], address[2], address[3]);
  return Success;
}

int noValidAnswer(Reply /*reply*/) {
  return NoValidAnswer;
}

/// The code that stayed is the answer.
int lastTroubleCode(Reply reply) {
  return reply.empty() ? NoValidAnswer : reply.back();
}

}  // namespace

namespace exchanges {

// Buffer size, pause after the write, attempts, pause between them, judge, verdict after the last.
constexpr Exchange SetConfig = {1000, 5, 1, 0, judgeSetConfig, noValidAnswer};
constexpr Exchange ResetIna = {255, 5, 2, 50, judgeReset, noValidAnswer};
constexpr Exchange GetAdapterDescriptor = {255, 0, 6, 10, judgeAdapterDescriptor, noValidAnswer};
constexpr Exchange GetTroubleCode = {255, 2, 4, 0, judgeTroubleCode, lastTroubleCode};
constexpr Exchange GetSsid = {512, 2, 7, 0, judgeSsid, noValidAnswer};
constexpr Exchange GetIp = {255, 3, 7, 0, judgeIp, noValidAnswer};

}  // namespace exchanges
