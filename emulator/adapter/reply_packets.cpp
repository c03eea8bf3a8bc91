// Builds the bytes of replies.

#include "emulator/adapter/reply_packets.h"

#include <algorithm>
#include <array>
#include <iterator>

#include "npa/packet.h"

namespace emulator {

namespace {

using npa::Byte;

void append(npa::Bytes& bytes, const auto& more) {
  std::ranges::copy(more, std::back_inserter(bytes));
}

/// The bytes after the command byte in the reply to a method call.
constexpr std::array<Byte, 5> ObjectStoreHead = {0xC0, 0x03, 0x00, 0x01, 0x00};

}  // namespace

npa::Bytes refusal() {
  return {npa::StartByte, 0x00, 0x02, npa::FlagRefused, npa::RequestCommand};
}

npa::Bytes garbage() {
  return {0x00, 0xFF, 0x13, 0x37, 0x5A, 0x80, 0x7F, 0x20, 0x0A, 0x99, 0xC3, 0x42};
}

npa::Bytes settingsReply(Byte result) {
  return {npa::StartByte,
          0x00,
          0x05,
          npa::RequestFlag,
          npa::RequestCommand,
          npa::DataSettings[0],
          npa::DataSettings[1],
          result};
}

npa::Bytes valuePacket(npa::SettingKey key, const npa::Bytes& value) {
  npa::Bytes packet;
  append(packet, npa::query(key));
  packet.push_back(npa::highByte(value.size()));
  packet.push_back(npa::lowByte(value.size()));
  append(packet, value);
  const std::size_t length = packet.size() - npa::LengthHeaderSize;
  packet[1] = npa::highByte(length);
  packet[2] = npa::lowByte(length);
  return packet;
}

npa::Bytes wrapped(const npa::Bytes& packet) {
  npa::Bytes result;
  append(result, npa::wrapHeader(packet.size()));
  append(result, packet);
  return result;
}

npa::Bytes packetSequence(const npa::Bytes& other, const npa::Bytes& content, std::size_t count) {
  npa::Bytes result;
  for (std::size_t i = 1; i < count; ++i) {
    npa::Bytes packet = wrapped(other);
    packet[npa::FlagOffset] |= npa::FlagMoreFollows;
    append(result, packet);
  }
  append(result, wrapped(content));
  return result;
}

npa::Bytes objectStoreReply(std::string_view xml, std::size_t count) {
  npa::Bytes head = {npa::RequestCommand};
  append(head, ObjectStoreHead);
  if (count <= 1 && head.size() + 1 + xml.size() <= LargestContent) {
    // A command byte precedes the text even if the reply is a single packet.
    head.push_back(npa::RequestCommand);
    append(head, xml);
    return rawReply(head);
  }
  constexpr std::size_t largestSlice = LargestContent - 1;
  const std::size_t needed =
      std::max<std::size_t>((xml.size() + largestSlice - 1) / largestSlice, 1);
  const std::size_t slices = std::max(count, needed + 1) - 1;
  npa::Bytes result = rawReply(head);
  std::size_t lastFlag = npa::FlagOffset;
  for (std::size_t i = 0; i < slices; ++i) {
    result[lastFlag] |= npa::FlagMoreFollows;
    lastFlag = result.size() + npa::FlagOffset;
    const std::size_t start = xml.size() * i / slices;
    const std::size_t end = xml.size() * (i + 1) / slices;
    npa::Bytes slice = {npa::RequestCommand};
    append(slice, xml.substr(start, end - start));
    append(result, rawReply(slice));
  }
  return result;
}

npa::Bytes rawReply(const npa::Bytes& content) {
  const std::size_t length = content.size() + 1;
  npa::Bytes packet = {npa::StartByte, npa::highByte(length), npa::lowByte(length),
                       npa::RequestFlag};
  append(packet, content);
  return packet;
}

}  // namespace emulator
