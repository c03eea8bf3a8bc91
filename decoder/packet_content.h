#pragma once

#include <array>
#include <span>

#include "decoder/packet.h"
#include "npa/packet.h"

namespace decoder {

/// The command byte between the parts of the reply to a method call.
inline constexpr std::array<npa::Byte, 1> CommandMark = {npa::RequestCommand};

/// Decodes a complete packet: flag byte, wrapper and contents. The caller sets stream and place. If
/// the packet continues the reply to a method call, the kind of its content is `Unknown`.
Packet readPacket(std::span<const npa::Byte> bytes);

/// Decodes a collected reply: the bytes after the flag byte of each packet, joined.
Packet readCollectedReply(std::span<const npa::Byte> bytes);

}  // namespace decoder
