#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "catalogue/packet_reader.h"
#include "catalogue/setting_catalogue.h"

/// The packets that an adapter answers with.
namespace emulator {

/// The refusal of a request.
npa::Bytes refusal();

/// Bytes without a start byte, which no reader can take for a packet.
npa::Bytes garbage();

/// The answer to settings; 0x01 says that they were accepted.
npa::Bytes settingsReply(npa::Byte result);

/// The answer to a query as a packet of its own: the queried packet, the value's length, the value.
npa::Bytes recordPacket(npa::SettingKey key, const npa::Bytes& value);

/// `packet` inside a wrapper.
npa::Bytes wrapped(const npa::Bytes& packet);

/// A reply of `count` packets, at least one. Each but the last holds `other`, and says that a
/// further one follows; the last holds `content`. All are wrappers.
npa::Bytes packetSequence(const npa::Bytes& other, const npa::Bytes& content, std::size_t count);

/// The reply to a method call in `count` packets, at least one, or in as many as it needs if they
/// are more. Of several the first holds the head of the reply alone; each but the last says that a
/// further one follows.
npa::Bytes objectStoreReply(std::string_view xml, std::size_t count);

/// A packet with `content`, at most `LargestContent` bytes, behind its flag byte.
npa::Bytes rawReply(const npa::Bytes& content);
inline constexpr std::size_t LargestContent = npa::LengthLimit - 1;

}  // namespace emulator
