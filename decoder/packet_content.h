#pragma once

#include <span>

#include "decoder/packet.h"

namespace decoder {

/// Decodes a complete packet: flag byte, wrapper and contents. The caller sets stream and place. If
/// the packet continues the reply to a method call, the kind of its content is `Unknown`.
Packet readPacket(std::span<const npa::Byte> bytes);

/// Decodes a collected reply: the bytes after the flag byte of each packet, joined.
Packet readCollectedReply(std::span<const npa::Byte> bytes);

}  // namespace decoder
