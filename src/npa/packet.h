#pragma once

#include <array>
#include <cstddef>
#include <span>

#include "npa/setting_keys.h"
#include "util/big_endian.h"

/// The layout of NPA packets: constants, and functions that build headers. All numbers are
/// big-endian. All bytes below are in hex; a number in parentheses is a count of bytes.
///
///     packet  = A5 length(2) flag command data      length counts flag, command and data
///     object  = group object 00 size(2) value       one setting
///     query   = packet with data D8 00 group object
///     config  = packet with data DA 01 object...    the adapter stores the objects all together;
///                                                   with D8 01 it stores them one by one
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

/// The offset of the flag byte in a raw reply packet.
inline constexpr std::size_t FlagOffset = 3;
/// The size of start byte and length field. The number in the length field does not include these
/// bytes.
inline constexpr std::size_t LengthHeaderSize = 3;
/// The largest value of a length field.
inline constexpr std::size_t LengthLimit = 0xFFFF;

/// Sizes in bytes of the headers and of the query that the functions below return.
inline constexpr std::size_t ObjectHeaderSize = 5;
inline constexpr std::size_t GroupingHeaderSize = 7;
inline constexpr std::size_t WrapHeaderSize = 9;
inline constexpr std::size_t QuerySize = 9;

/// The first two bytes of a packet's data, which identify the kind of the data.
using DataKind = std::array<Byte, 2>;
inline constexpr DataKind DataQuery = {0xD8, 0x00};
inline constexpr DataKind DataSettings = {0xDA, 0x01};
inline constexpr DataKind DataSingleSettings = {0xD8, 0x01};
inline constexpr DataKind DataWrapped = {0x63, 0x02};

/// The header of a packet that carries a method call. The length field is 0 here. `objStoreHeader`
/// sets it.
inline constexpr std::array<Byte, 9> ObjStoreNpaHeader = {0xA5, 0x00, 0x00, 0x50, 0xE0,
                                                          0xC0, 0x03, 0x00, 0x01};

/// The packet that resets the adapter: it sets the flag `settings::Reset` to 1.
inline constexpr std::array<Byte, 13> ResetPacket = {0xA5, 0x00, 0x0A, 0x50, 0xE0, 0xDA, 0x01,
                                                     0x06, 0x14, 0x00, 0x00, 0x01, 0x01};

/// The fixed packet that precedes every method call.
inline constexpr std::array<Byte, 19> usbSniff = {0xA5, 0x00, 0x10, 0x80, 0xA4, 0x5B, 0xA4,
                                                  0x5B, 0x10, 0xEF, 0xA4, 0x5B, 0x11, 0xEE,
                                                  0x00, 0xFF, 0x13, 0xEC, 0x2E};

using util::highByte;
using util::lowByte;

/// Returns the two-byte number at `offset`. Both bytes must be inside `bytes`.
constexpr std::size_t numberAt(std::span<const Byte> bytes, std::size_t offset) {
  return static_cast<std::size_t>(util::bigEndian(bytes.subspan(offset, 2)));
}

/// Returns the header of a setting object whose value has `valueSize` bytes, at most `LengthLimit`.
constexpr std::array<Byte, ObjectHeaderSize> objectHeader(Byte group, Byte object,
                                                          std::size_t valueSize) {
  return {group, object, 0x00, highByte(valueSize), lowByte(valueSize)};
}

/// Returns the header that precedes `objectsSize` bytes of setting objects in a configuration
/// packet.
constexpr std::array<Byte, GroupingHeaderSize> groupingHeader(std::size_t objectsSize,
                                                              DataKind kind = DataSettings) {
  const std::size_t length = objectsSize + GroupingHeaderSize - LengthHeaderSize;
  return {StartByte,      highByte(length), lowByte(length), RequestFlag,
          RequestCommand, kind[0],          kind[1]};
}

/// Returns the header of a wrapper around a packet of `packetSize` bytes.
constexpr std::array<Byte, WrapHeaderSize> wrapHeader(std::size_t packetSize) {
  const std::size_t length = packetSize + WrapHeaderSize - LengthHeaderSize;
  return {StartByte,      highByte(length),     lowByte(length),
          RequestFlag,    RequestCommand,       DataWrapped[0],
          DataWrapped[1], highByte(packetSize), lowByte(packetSize)};
}

/// Returns the whole query packet for one setting.
constexpr std::array<Byte, QuerySize> query(SettingKey key) {
  const std::size_t length = QuerySize - LengthHeaderSize;
  return {StartByte,    highByte(length), lowByte(length), RequestFlag, RequestCommand,
          DataQuery[0], DataQuery[1],     key.group,       key.object};
}

/// Returns the header of a method call whose XML text has `xmlSize` bytes.
constexpr auto objStoreHeader(std::size_t xmlSize) {
  const std::size_t length = xmlSize + ObjStoreNpaHeader.size() - LengthHeaderSize;
  auto header = ObjStoreNpaHeader;
  header[1] = highByte(length);
  header[2] = lowByte(length);
  return header;
}

/// Returns true if the length field can hold the length of a packet of `size` bytes. `size`
/// includes the start byte and the length field.
[[nodiscard]] constexpr bool canBeFramed(std::size_t size) {
  return size <= LengthLimit + LengthHeaderSize;
}

}  // namespace npa
