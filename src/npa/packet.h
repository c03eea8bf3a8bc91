#pragma once

#include <array>
#include <cstddef>
#include <span>

#include "npa/setting_keys.h"
#include "util/big_endian.h"

/// The layout of NPA packets, as data and pure functions. All numbers are big-endian.
///
///     packet  = A5 length(2) flag command data      length counts flag, command and data
///     object  = group object 00 size(2) value       one setting
///     query   = packet with data D8 00 group object
///     config  = packet with data DA 01 object...   stored as one group; D8 01: one by one
///     wrapped = packet with data 63 02 size(2) packet
namespace npa {

inline constexpr Byte StartByte = 0xA5;
inline constexpr Byte RequestFlag = 0x50;
inline constexpr Byte RequestCommand = 0xE0;

/// Bits of a reply's flag byte.
inline constexpr Byte FlagEndsExchange = 0x80;
inline constexpr Byte FlagMoreFollows = 0x20;
/// The whole flag byte of a reply that refuses the request.
inline constexpr Byte FlagRefused = 0xD4;

/// Where a raw reply's flag byte stands.
inline constexpr std::size_t FlagOffset = 3;
/// Start byte and length field: what the length field does not count.
inline constexpr std::size_t LengthHeaderSize = 3;
/// The largest value of a length field.
inline constexpr std::size_t LengthLimit = 0xFFFF;

inline constexpr std::size_t ObjectHeaderSize = 5;
inline constexpr std::size_t GroupingHeaderSize = 7;
inline constexpr std::size_t WrapHeaderSize = 9;
inline constexpr std::size_t QuerySize = 9;

/// The two bytes that open a packet's data and say what it carries.
using DataKind = std::array<Byte, 2>;
inline constexpr DataKind DataQuery = {0xD8, 0x00};
inline constexpr DataKind DataSettings = {0xDA, 0x01};
inline constexpr DataKind DataSingleSettings = {0xD8, 0x01};
inline constexpr DataKind DataWrapped = {0x63, 0x02};

/// Head of an object-store packet; its length bytes are filled in per call.
inline constexpr std::array<Byte, 9> ObjStoreNpaHeader = {0xA5, 0x00, 0x00, 0x50, 0xE0,
                                                          0xC0, 0x03, 0x00, 0x01};

/// The fixed packet that goes ahead of an object-store packet.
inline constexpr std::array<Byte, 19> usbSniff = {0xA5, 0x00, 0x10, 0x80, 0xA4, 0x5B, 0xA4,
                                                  0x5B, 0x10, 0xEF, 0xA4, 0x5B, 0x11, 0xEE,
                                                  0x00, 0xFF, 0x13, 0xEC, 0x2E};

using util::highByte;
using util::lowByte;

/// The two-byte number at `offset`. Both bytes must lie inside `bytes`.
constexpr std::size_t numberAt(std::span<const Byte> bytes, std::size_t offset) {
  return util::bigEndian(bytes.subspan(offset, 2));
}

/// The header of one setting object whose value has `valueSize` bytes, at most `LengthLimit`.
constexpr std::array<Byte, ObjectHeaderSize> objectHeader(Byte group, Byte object,
                                                          std::size_t valueSize) {
  return {group, object, 0x00, highByte(valueSize), lowByte(valueSize)};
}

/// The header that turns `objectsSize` bytes of setting objects into one configuration packet.
constexpr std::array<Byte, GroupingHeaderSize> groupingHeader(std::size_t objectsSize,
                                                              DataKind kind = DataSettings) {
  const std::size_t length = objectsSize + GroupingHeaderSize - LengthHeaderSize;
  return {StartByte,      highByte(length), lowByte(length), RequestFlag,
          RequestCommand, kind[0],          kind[1]};
}

/// The header that wraps a packet of `packetSize` bytes in another.
constexpr std::array<Byte, WrapHeaderSize> wrapHeader(std::size_t packetSize) {
  const std::size_t length = packetSize + WrapHeaderSize - LengthHeaderSize;
  return {StartByte,      highByte(length),     lowByte(length),
          RequestFlag,    RequestCommand,       DataWrapped[0],
          DataWrapped[1], highByte(packetSize), lowByte(packetSize)};
}

/// The query for one setting object.
constexpr std::array<Byte, QuerySize> query(SettingKey key) {
  const std::size_t length = QuerySize - LengthHeaderSize;
  return {StartByte,    highByte(length), lowByte(length), RequestFlag, RequestCommand,
          DataQuery[0], DataQuery[1],     key.group,       key.object};
}

/// The header of an object-store packet with `xmlSize` bytes of XML.
constexpr auto objStoreHeader(std::size_t xmlSize) {
  const std::size_t length = xmlSize + ObjStoreNpaHeader.size() - LengthHeaderSize;
  auto header = ObjStoreNpaHeader;
  header[1] = highByte(length);
  header[2] = lowByte(length);
  return header;
}

/// Whether a packet of `size` bytes, start byte and length field included, has a length that its
/// length field can hold.
[[nodiscard]] constexpr bool canBeFramed(std::size_t size) {
  return size <= LengthLimit + LengthHeaderSize;
}

}  // namespace npa
