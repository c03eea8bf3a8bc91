#include "emulator/reply_packets.h"

#include <algorithm>
#include <iterator>

namespace emulator {

namespace {

using npa::Byte;

void append(Bytes& bytes, const auto& more) {
  std::ranges::copy(more, std::back_inserter(bytes));
}

}  // namespace

Bytes refusal() {
  return {npa::StartByte, 0x00, 0x02, npa::FlagRefused, npa::RequestCommand};
}

Bytes garbage() {
  return {0x00, 0xFF, 0x13, 0x37, 0x5A, 0x80, 0x7F, 0x20, 0x0A, 0x99, 0xC3, 0x42};
}

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

Bytes recordPacket(SettingKey key, const Bytes& value) {
  Bytes packet;
  append(packet, npa::query(key.group, key.object));
  packet.push_back(npa::highByte(value.size()));
  packet.push_back(npa::lowByte(value.size()));
  append(packet, value);
  const std::size_t length = packet.size() - npa::LengthHeaderSize;
  packet[1] = npa::highByte(length);
  packet[2] = npa::lowByte(length);
  return packet;
}

Bytes wrapped(const Bytes& packet) {
  Bytes result;
  append(result, npa::wrapHeader(packet.size()));
  append(result, packet);
  return result;
}

Bytes packetSequence(const Bytes& other, const Bytes& content, std::size_t count) {
  Bytes result;
  for (std::size_t i = 1; i < count; ++i) {
    Bytes packet = wrapped(other);
    packet[npa::FlagOffset] |= npa::FlagMoreFollows;
    append(result, packet);
  }
  append(result, wrapped(content));
  return result;
}

}  // namespace emulator
