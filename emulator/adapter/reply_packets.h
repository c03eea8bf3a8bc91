#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "catalogue/packet_reader.h"
#include "catalogue/setting_catalogue.h"

/// Builders of the packets that an adapter sends.
namespace emulator {

/// Returns the refusal of a request.
npa::Bytes refusal();

/// Returns bytes that contain no packet, because none of them is a start byte.
npa::Bytes garbage();

/// Returns the reply to settings. The result 0x01 means that they were accepted.
npa::Bytes settingsReply(npa::Byte result);

/// Returns the bare reply to a query: the query, the size of the value, and the value. Inside a
/// wrapper this packet is a record.
npa::Bytes valuePacket(npa::SettingKey key, const npa::Bytes& value);

/// Returns `packet` inside a wrapper.
npa::Bytes wrapped(const npa::Bytes& packet);

/// Returns a reply of `count` wrappers (at least 1). The last wrapper contains `content`. Each
/// other wrapper contains `other`, and its flag byte announces another packet.
npa::Bytes packetSequence(const npa::Bytes& other, const npa::Bytes& content, std::size_t count);

/// Returns the reply to a method call. The reply has `count` packets (at least 1), or more if the
/// text does not fit into `count` packets. If the reply has several packets, the first packet has
/// only the head of the reply. The flag byte of each packet except the last announces another
/// packet.
npa::Bytes objectStoreReply(std::string_view xml, std::size_t count);

/// Returns a packet with `content` after its flag byte. The content has at most `LargestContent`
/// bytes.
npa::Bytes rawReply(const npa::Bytes& content);
inline constexpr std::size_t LargestContent = npa::LengthLimit - 1;

}  // namespace emulator
